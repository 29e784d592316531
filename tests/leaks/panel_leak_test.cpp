#include "tests/leaks/panel_leak_test.h"

#include "res/resource.h"

namespace leaks {
namespace {

// The shown tab, extensive tips, an edge to dock at.
constexpr const char* kSettings = "Main=1,False,False,False,True,False,True,1,False,True,False\r\n";

std::string Ini(const std::string& file, const std::string& other, const std::string& folder) {
    return "[Buttons]\r\n10=One|first\r\n20=Two|second\r\n"
           "11=File|2\r\n12=Group|0\r\n13=Url|0\r\n14=Folder|0\r\n15=Switched|1\r\n"
           "21=Other|0\r\n22=Group|0\r\n23=Url|0\r\n31=File|3\r\n"
           "[Cuts]\r\nFile=" +
           file + "\r\nOther=" + other + "\r\nGroup=" + file + "|" + other +
           "\r\nUrl=http://host.test/page.html\r\nFolder=" + folder + "\r\nSwitched=" + file +
           "\r\n[Switch]\r\nSwitched=/a\r\n[Collected]\r\nTool=C:\\tool.exe\r\n";
}

}  // namespace

PanelLeakTest::PanelLeakTest()
    : program_(testkit::TestProgramFolder() + "\\quon_leak_tests.exe"),
      file_(targets_.MakeFile("file.txt", "text")),
      otherFile_(targets_.MakeFile("other file.txt", "text")),
      link_(targets_.MakeLink("link.lnk", {.target = file_, .arguments = "/x"})),
      panel_(kSettings, Ini(file_, otherFile_, targets_.MakeFolder("folder"))) {
    fakes_.push_back(FAKE_CALL(FindExecutableA, [this](LPCSTR, LPCSTR, LPSTR answer) {
        std::strcpy(answer, program_.c_str());
        return reinterpret_cast<HINSTANCE>(33);
    }));
    fakes_.push_back(ANSWER_CALL(ShellExecuteA, reinterpret_cast<HINSTANCE>(33)));
    fakes_.push_back(FAKE_CALL(Sleep, [](DWORD) {}));
    fakes_.push_back(
        WATCH_CALL(RegisterDragDrop, [this](HWND, LPDROPTARGET target) { dropTargets_.push_back(target); }));
    // A program of the panel's own folder has an entry in a menu.
    panel_.Folder().MakeFile("Companion.exe");
    panel_.Load();
    ORIGINAL_CALL(ShowWindow)(Panel().Handle(), SW_SHOWNOACTIVATE);
    StartLedger();
    Paint();
}

PanelLeakTest::~PanelLeakTest() {
    Panel().Send(WM_CLOSE);
    panel_.Release();
}

void PanelLeakTest::Click(testkit::Window picture, std::initializer_list<int> held) {
    const app::HeldModifierKeys keys(held);
    picture.SendClick();
}

void PanelLeakTest::DoubleClick(testkit::Window picture, std::initializer_list<int> held) {
    Click(picture, held);
    picture.Send(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
    picture.Send(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
}

void PanelLeakTest::Hover(testkit::Window picture) {
    picture.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    picture.Send(WM_MOUSEMOVE, 0, MAKELPARAM(6, 6));
}

void PanelLeakTest::ShowTab(int tab) const {
    Click(Child(IDC_TAB_HEADER + tab));
    Paint();
}

void PanelLeakTest::Paint() const {
    RedrawWindow(Panel().Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void PanelLeakTest::PressInMenu(std::initializer_list<WORD> keys) const {
    for (const WORD key : keys)
        Panel().Post(WM_KEYDOWN, key);
}

void PanelLeakTest::PressInMenu(int times, WORD key) const {
    for (int time = 0; time < times; ++time)
        PressInMenu({key});
}

void PanelLeakTest::OpenBare(std::initializer_list<int> templates) const {
    for (const int id : templates)
        DialogBoxParamW(
            GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), Panel().Handle(),
            +[](HWND dialog, UINT message, WPARAM wParam, LPARAM) -> INT_PTR {
                if (message == WM_INITDIALOG) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
                if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) EndDialog(dialog, 0);
                return message == WM_INITDIALOG;
            },
            0);
}

void PanelLeakTest::OpenBarePanel() const {
    const auto make = [](testkit::Window window, HWND parent) {
        const RECT at = window.Rect();
        const std::string name = window.Class();
        return CreateWindowExW(static_cast<DWORD>(window.ExtendedStyle()),
                               name.starts_with("Quon") ? L"STATIC" : testkit::Wide(name).c_str(), L"bare",
                               static_cast<DWORD>(window.Style()), 0, 0, at.right - at.left,
                               at.bottom - at.top, parent, nullptr, nullptr, nullptr);
    };
    HWND panel = make(Panel(), nullptr);
    for (const testkit::Window child : Panel().Descendants())
        // The combo box makes its own.
        if (child.Parent().Class() != "ComboBox") make(child, panel);
    RedrawWindow(panel, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    DestroyWindow(panel);
}

void PanelLeakTest::Drop(size_t target, const std::function<void(testkit::DataObject&)>& offer) const {
    testkit::DataObject object;
    offer(object);
    DWORD effect = DROPEFFECT_COPY;
    DropTarget(target).DragEnter(&object, 0, {}, &effect);
    DropTarget(target).Drop(&object, 0, {}, &effect);
    // The object is made with one reference; a reference that was kept would make it three.
    EXPECT_EQ(object.AddRef(), 2u);
    win::ProcessPendingMessages();
}

}  // namespace leaks
