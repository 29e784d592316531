#include "tests/unit/app/every_window.h"

#include "app/add_to_button.h"
#include "dialogs/define_tab.h"
#include "dialogs/edit_group.h"
#include "dialogs/edit_shortcut.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "dialogs/options.h"
#include "dialogs/organize_shortcuts.h"
#include "tests/unit/app/panel_harness.h"

namespace app {
namespace {

using testkit::ModalAnswers, testkit::Window;
using Visit = std::function<void(const std::string&, Window)>;

constexpr const char* kRecords =
    "[Buttons]\r\n10=Main|first\r\n11=Notes|0\r\n12=Morning|0\r\n"
    "[Cuts]\r\nNotes=C:\\windows\\notepad.exe\r\n"
    "Morning=C:\\windows\\notepad.exe|C:\\windows\\win.ini\r\nNothing=\r\n";

class Tour {
  public:
    explicit Tour(const Visit& visit) : visit_(visit) { panel_.Load(); }

    void VisitPanel() {
        visit_("the panel", panel_.Window());
        EXPECT_TRUE(panel_.PressKey(WM_KEYDOWN, VK_F2));
        visit_("the panel while a button is renamed", panel_.Window());
        EXPECT_TRUE(panel_.PressKey(WM_KEYDOWN, VK_ESCAPE));
    }

    void VisitMessages() {
        Open("the question on a used button", [] {
            dialogs::ShowMessage(
                "Do you want to replace the shortcut or create a group?\r\n(Enter group name)", 3,
                "Create group", "Replace", "Cancel", true, "Notes");
        });
        Open("the question for a switch", [] {
            dialogs::ShowMessage("Please enter command switch for this file:", 3, "Cancel", "Delete", "OK",
                                 true, "/k");
        });
        Open("a note", [] { dialogs::ShowNote(dialogs::kCouldNotMake); });
        Open("the warning of the options", [] {
            dialogs::ShowMessage(
                "Please note:\n\nSince you cleared both settings for poping-up Quon, (framed in red), the "
                "only "
                "way to call it is clicking on the tray icon.",
                1, "Accept");
        });
        Open("About", [] { dialogs::frmMsg().AboutQuon(); });
    }

    void VisitDialogs() {
        model::ButtonContext& context = panel_.Panel().Context();
        const HWND owner = panel_.Window().Handle();
        Open("the options", [&] { dialogs::frmSettings(panel_.Panel()).Open(); });
        Open("the tab's definition", [&] { dialogs::frmTabPrep(panel_.Panel(), 1).Open(); });
        Open("the organiser", [&] { dialogs::frmCuts(context).Show(owner); });
        Open("the shortcut's editor", [&] {
            dialogs::frmEdit editor(context);
            editor.PrepareWindow("Notes", "C:\\windows\\notepad.exe\n", GetSysColor(COLOR_WINDOW));
            editor.Show(owner);
        });
        for (const char* group : {"Morning", "Nothing"})
            Open(std::string("the group's editor on ") + group, [&] {
                dialogs::frmEditB editor(context);
                editor.PrepareWindow(group);
                editor.Show(owner);
            });
        for (const char* file : {"C:\\windows\\notepad.exe", "C:\\windows\\win.ini"})
            Open(std::string("the icon chooser on ") + file, [&] {
                dialogs::IcoChooser chooser;
                chooser.ReadIcons(file);
                chooser.Show(owner);
            });
    }

  private:
    void Open(const std::string& name, const std::function<void()>& open) {
        const ModalAnswers user({[&](Window window) {
            visit_(name, window);
            window.Post(WM_COMMAND, IDCANCEL);
        }});
        open();
    }

    const Visit& visit_;
    PanelHarness panel_{kPlainSettings, kRecords};
};

}  // namespace

void ForEveryWindow(const Visit& visit) {
    Tour tour(visit);
    tour.VisitPanel();
    tour.VisitMessages();
    tour.VisitDialogs();
}

}  // namespace app
