// Takes the pictures of the README and the manual from the running program. scripts/screenshots runs it:
//
//     quon_pictures <a Quon.ini with filled buttons> <the number of the button with a group>
//
// The pictures go into the folder for artifacts, as BMP files.

#include <exception>
#include <iostream>

#include "dialogs/organize_shortcuts.h"
#include "tests/program/quon_panel.h"

namespace {

using testkit::CaptureScreen, testkit::MessageBoxWindow, testkit::Picture, testkit::PopupMenu,
    testkit::QuonPanel, testkit::Window;

constexpr POINT kAway{5, 400};
/// A picture is taken when nothing has changed for so long.
constexpr std::chrono::milliseconds kRest{300};

RECT Around(RECT one, RECT other) {
    RECT both{};
    UnionRect(&both, &one, &other);
    return both;
}

void Save(const std::string& name, RECT rect) {
    Picture picture = CaptureScreen(rect);
    testkit::WaitFor("the screen to rest", [&] {
        const Picture before = picture;
        return testkit::HoldsThroughout(kRest, [&] { return (picture = CaptureScreen(rect)) == before; });
    });
    std::cout << picture.SaveAs(name + ".bmp") << '\n';
}

void Save(const std::string& name, Window window) { Save(name, window.Rect()); }

/// A dialog of the program, found by the beginning of its caption.
Window WaitForDialog(DWORD process, const std::string& caption) {
    return testkit::WaitFor("a window " + caption, [&] {
        const auto windows = testkit::FindTopWindows({.process_id = process});
        const auto found = std::find_if(windows.begin(), windows.end(), [&](Window window) {
            return window.Exists() && window.Text().starts_with(caption);
        });
        return found == windows.end() ? Window() : *found;
    });
}

void Dismiss(Window dialog) {
    dialog.Post(WM_COMMAND, IDCANCEL);
    testkit::WaitFor("a window to close", [&] { return !dialog.IsVisible(); });
}

class Album {
  public:
    explicit Album(const std::string& ini) {
        folder_.WriteIniText(testkit::FileBytes(ini));
        quon_.emplace(folder_);
        quon_->WaitUntilPainted();
        panel_ = quon_->Main();
    }

    void TakeAll(int group) {
        Rest();
        Save("panel", panel_);
        TakeButtonMenu();
        TakeQuestions();
        TakeIconChooser();
        TakeGroup(group);
        TakeTab();
        TakeShortcutList();
        TakeMenus();
        TakeTips(group);
        TakeSettings();
        TakeDocked();
    }

  private:
    /// The pointer away from everything, the panel in front.
    void Rest() {
        testkit::mouse::MoveTo(kAway);
        panel_.Activate();
        quon_->LeaveAlone();
    }

    PopupMenu OpenMenu(Window button) {
        Rest();
        button.Id() < 240 ? testkit::mouse::RightClick(button) : testkit::mouse::Click(button);
        PopupMenu menu = PopupMenu::Wait(quon_->Id());
        testkit::mouse::MoveTo(kAway);
        return menu;
    }

    void TakeButtonMenu() {
        PopupMenu menu = OpenMenu(quon_->Button(1));
        const PopupMenu operations = menu.Open("File operations");
        Save("button-menu",
             Around(Around(panel_.Rect(), menu.PopupWindow().Rect()), operations.PopupWindow().Rect()));
        menu.Dismiss();
        if (PopupMenu::OpenCount(quon_->Id()) > 0) PopupMenu::Wait(quon_->Id()).Dismiss();
    }

    void TakeQuestions() {
        Rest();
        quon_->OpenButton(1, {VK_CONTROL, VK_MENU});
        TakeBox("switch");
        PutOnClipboard("https://www.example.org");
        OpenMenu(quon_->Button(1)).Choose("Paste from clipboard");
        TakeBox("question");
    }

    void TakeBox(const std::string& name) {
        const MessageBoxWindow box = MessageBoxWindow::Wait(quon_->Id());
        testkit::mouse::MoveTo(kAway);
        Save(name, box.BoxWindow());
        box.AnswerByKey(VK_ESCAPE);
    }

    static void PutOnClipboard(const std::string& text) {
        testkit::WaitFor("the clipboard", [] { return OpenClipboard(nullptr) != FALSE; });
        EmptyClipboard();
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, text.size() + 1);
        memcpy(GlobalLock(memory), text.c_str(), text.size() + 1);
        GlobalUnlock(memory);
        SetClipboardData(CF_TEXT, memory);
        CloseClipboard();
    }

    void TakeIconChooser() {
        OpenMenu(quon_->Button(8)).Choose("Change icon");
        const Window chooser = WaitForDialog(quon_->Id(), "Icon Chooser");
        testkit::mouse::MoveTo(kAway);
        Save("icon-chooser", Around(panel_.Rect(), chooser.Rect()));
        Dismiss(chooser);
    }

    void TakeGroup(int group) {
        OpenMenu(quon_->Button(group)).Choose("Edit group");
        TakeDialog("edit-group", "Edit group");
    }

    void TakeDialog(const std::string& name, const std::string& caption) {
        const Window dialog = WaitForDialog(quon_->Id(), caption);
        testkit::mouse::MoveTo(kAway);
        Save(name, dialog);
        Dismiss(dialog);
    }

    void TakeTab() {
        Rest();
        testkit::mouse::RightClick(quon_->Header(2));
        TakeDialog("define-tab", "Define tab");
    }

    void TakeShortcutList() {
        Rest();
        quon_->Shortcuts().Send(CB_SHOWDROPDOWN, TRUE);
        RECT list = panel_.Rect();
        const Window dropped =
            testkit::WaitForTopWindow({.class_name = "ComboLBox", .process_id = quon_->Id()});
        list = Around(list, dropped.Rect());
        Save("shortcut-list", list);
        quon_->Shortcuts().Send(CB_SHOWDROPDOWN, FALSE);
    }

    void TakeMenus() {
        const char* const names[] = {"shell-menu", "predefined-menu", "settings-menu"};
        for (int index = 0; index < 3; ++index) {
            const PopupMenu menu = OpenMenu(quon_->ImageButton(index));
            Save(names[index], Around(panel_.Rect(), menu.PopupWindow().Rect()));
            menu.Dismiss();
        }
    }

    /// The tips of a button with one target, of one with a group, and of a tab.
    void TakeTips(int group) {
        TakeTip("tip-file", PointAt(1));
        TakeTip("tip-group", PointAt(group));
        TakeTip("tip-tab", quon_->Header(3));
    }

    /// The hover picture, which lies on the button that the pointer is moved to.
    Window PointAt(int button) {
        Rest();
        const Window face = quon_->Button(button);
        const Window picture = quon_->HoverPicture();
        testkit::mouse::MoveTo(face.Centre());
        testkit::WaitFor("the hover picture", [&] {
            const RECT place = face.Rect();
            return picture.IsVisible() && PtInRect(&place, picture.Centre());
        });
        return picture;
    }

    void TakeTip(const std::string& name, Window over) {
        const testkit::ToolTipWatch tips(panel_);
        const POINT centre = over.Centre();
        testkit::mouse::MoveTo(centre);
        testkit::mouse::MoveTo({centre.x + 2, centre.y + 1});
        const Window tip = testkit::WaitFor("a tip", [&] { return tips.Shown(); });
        Save(name, Around(panel_.Rect(), tip.Rect()));
        Rest();
    }

    void TakeSettings() {
        OpenMenu(quon_->ImageButton(2)).Choose("About");
        TakeDialog("about", "About");
        OpenMenu(quon_->ImageButton(2)).Choose("Options");
        TakeDialog("options", "Quon settings");
        OpenMenu(quon_->ImageButton(2)).Choose("Organize shortcuts");
        const Window organizer = WaitForDialog(quon_->Id(), "Organize shortcuts");
        testkit::mouse::MoveTo(kAway);
        Save("organize", organizer);
        organizer.PostPress(dialogs::frmCuts::Command1 + 0);
        TakeDialog("edit-shortcut", "Edit ");
        Dismiss(organizer);
    }

    /// The strip at the left edge, and the icon's menu.
    void TakeDocked() {
        testkit::mouse::MoveTo(kAway);
        panel_.Post(WM_SYSCOMMAND, SC_CLOSE);
        testkit::WaitFor("the panel to dock", [&] { return !quon_->IsOut(); });
        const RECT strip = panel_.Rect();
        Save("docked", {0, strip.top - 60, 160, strip.bottom + 60});

        const RECT bar = testkit::FindTopWindow({.class_name = "Shell_TrayWnd"}).Rect();
        const LONG size = bar.bottom - bar.top;
        testkit::mouse::RightClick(POINT{bar.right - size / 2, bar.bottom - size / 2});
        const PopupMenu menu = PopupMenu::Wait(quon_->Id());
        RECT corner = Around(menu.PopupWindow().Rect(), {bar.right - size, bar.top, bar.right, bar.bottom});
        InflateRect(&corner, 20, 20);
        Save("tray-menu", corner);
        menu.Dismiss();
    }

    testkit::ProgramFolder folder_;
    std::optional<QuonPanel> quon_;
    Window panel_;
};

}  // namespace

int main(int count, char** arguments) try {
    if (count != 3) {
        std::cerr << "usage: quon_pictures QUON.INI GROUP-BUTTON\n";
        return 2;
    }
    Album(testkit::WindowsPath(arguments[1])).TakeAll(std::stoi(arguments[2]));
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
