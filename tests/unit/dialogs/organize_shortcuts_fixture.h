// The organiser over a configuration file of its own.
#pragma once

#include "dialogs/edit_group.h"
#include "dialogs/edit_shortcut.h"
#include "dialogs/organize_shortcuts.h"
#include "res/resource.h"
#include "tests/support/paint_log.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "win/dialog.h"
#include "win/handles.h"
#include "win/text.h"

namespace dialogs {

using testkit::ModalAnswers, testkit::Window;

inline constexpr const char* kShortcuts =
    "[Buttons]\r\n23=Notes|4\r\n[Cuts]\r\nNotes=C:\\notes.txt\r\nWork=C:\\a|C:\\b\r\nЂорђе "
    "文件=http://a.example/?x=y\r\n";

class OrganizeShortcutsTest : public ::testing::Test {
  protected:
    static Window List(Window organiser) { return organiser.Child(frmCuts::pBasket); }
    static void Press(Window organiser, WPARAM key) { List(organiser).Send(WM_KEYDOWN, key); }
    static void Quit(Window organiser) { organiser.PostPress(frmCuts::Command1 + 2); }

    /// The names that the organiser has listed.
    static std::vector<std::string> Names(Window organiser) {
        const HWND box = organiser.Child(frmCuts::List1).Handle();
        std::vector<std::string> names;
        for (LRESULT index = 0; index < SendMessageW(box, LB_GETCOUNT, 0, 0); ++index) {
            std::wstring name(
                static_cast<size_t>(SendMessageW(box, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0)) + 1,
                L'\0');
            SendMessageW(box, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(name.data()));
            name.pop_back();
            names.push_back(testkit::Utf8(name));
        }
        return names;
    }

    OrganizeShortcutsTest() { win::SetMainWindow(owner_.Handle()); }
    ~OrganizeShortcutsTest() override { win::SetMainWindow(nullptr); }

    void Organize(std::string_view ini, std::vector<ModalAnswers::Step> steps) {
        folder_.WriteIniText(ini);
        context_.Records.LoadButtonRecords();
        const ModalAnswers user(std::move(steps));
        organiser_.Show(owner_.Handle());
    }
    /// Opens the organiser for one step and quits it.
    void Look(std::string_view ini, const ModalAnswers::Step& step) {
        Organize(ini, {[&](Window organiser) {
                     step(organiser);
                     Quit(organiser);
                 }});
    }
    std::vector<std::string> Keys() const { return folder_.Ini().Keys("Cuts"); }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow owner_;
    model::ButtonContext context_;
    frmCuts organiser_{context_};
};

}  // namespace dialogs
