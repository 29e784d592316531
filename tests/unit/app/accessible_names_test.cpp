// What screen readers call each control.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <oleacc.h>

#include <set>
#include <string>

#include "dialogs/message_box.h"
#include "dialogs/options.h"
#include "res/resource.h"
#include "tests/support/annotations.h"
#include "tests/unit/app/every_window.h"

namespace app {
namespace {

using ::testing::IsEmpty;
using ::testing::Not;
using testkit::Window;

bool HasDialogCode(Window control, LRESULT code) { return (control.Send(WM_GETDLGCODE) & code) != 0; }

bool IsFrame(Window control) {
    return control.Class() == "Button" && (control.Style() & BS_TYPEMASK) == BS_GROUPBOX;
}

/// What a user can do something with; texts, frames and what only holds other windows have nothing to be
/// called.
bool IsControl(Window window) {
    static const std::set<std::string> kOthers{"Static", "QuonButtons"};
    const bool part = window.Parent().Class() == "ComboBox";
    return (window.Style() & WS_VISIBLE) != 0 && !part && !IsFrame(window) &&
           !kOthers.contains(window.Class());
}

/// A label in front of a control names it, also one that nobody sees; the search ends at another control.
std::string LabelBefore(Window control) {
    HWND before = control.Handle();
    while ((before = GetWindow(before, GW_HWNDPREV)) != nullptr) {
        const Window label(before);
        if (HasDialogCode(label, DLGC_STATIC) && !label.Text().empty()) return label.Text();
        if ((label.Style() & WS_VISIBLE) != 0 && (label.Style() & WS_TABSTOP) != 0) return "";
    }
    return "";
}

/// The name as Windows' accessibility makes it up. The text of a field is what it holds, not what it is
/// called; that of a scroll bar is not seen, and so no screen reader has to look for it.
std::string NameOf(Window control, const testkit::Annotations& told) {
    static const std::set<std::string> kFields{"Edit", "ComboBox", "ListBox", "msctls_hotkey32"};
    control.Send(WM_GETOBJECT, 0, OBJID_CLIENT);
    const std::string annotated = told.NameOf(control.Handle());
    if (!annotated.empty() || control.Class() == "ScrollBar") return annotated;
    return kFields.contains(control.Class()) ? LabelBefore(control) : control.Text();
}

TEST(AccessibleNamesTest, EveryControlOfEveryWindowHasOne) {
    const testkit::Annotations told;
    std::size_t controls = 0;
    ForEveryWindow([&](const std::string& name, Window window) {
        for (const Window control : window.Descendants()) {
            if (!IsControl(control)) continue;
            ++controls;
            EXPECT_THAT(NameOf(control, told), Not(IsEmpty()))
                << name << ": " << control.Describe() << " " << control.Id();
        }
    });
    EXPECT_GT(controls, 80U);
    EXPECT_EQ(told.Count(), 0U) << "what was told is taken back when the windows go";
}

TEST(AccessibleNamesTest, AreTheOnesOfTheirLabels) {
    const testkit::Annotations told;
    const auto expect = [&](const std::string& name, Window window, int id, const char* called) {
        EXPECT_EQ(NameOf(window.Child(id), told), called) << name;
    };
    ForEveryWindow([&](const std::string& name, Window window) {
        if (name == "the options") expect(name, window, frmSettings_Text1, "Delay in milliseconds:");
        if (name == "the options") expect(name, window, frmSettings_HotKey, "Hot key:");
        if (name == "the question for a switch")
            expect(name, window, frmMsg_Text1, "Please enter command switch for this file:");
        if (name == "the organiser") expect(name, window, frmCuts_Scr, "Shortcuts, up and down");
        if (name.starts_with("the group's editor"))
            expect(name, window, frmEditB_Scr, "Items of the group, up and down");
        if (name.starts_with("the icon chooser"))
            expect(name, window, IcoChooser_HScr, "Icons, left and right");
        if (name == "the panel while a button is renamed") expect(name, window, IDC_RENAME, "New name");
        if (name != "the panel") return;
        expect(name, window, IDC_SHORTCUTS, "Shortcuts");
        expect(name, window, IDC_BUTTON + 1, "Notes");
        expect(name, window, IDC_BUTTON + 3, "Empty");
        expect(name, window, IDC_TAB_HEADER + 1, "Main");
        expect(name, window, IDC_TAB_HEADER + 2, "Tab 2");
    });
}

TEST(AccessibleNamesTest, GoWithTheRightRoles) {
    const testkit::Annotations told;
    ForEveryWindow([&](const std::string& name, Window window) {
        const auto role = [&](int id) {
            window.Child(id).Send(WM_GETOBJECT, 0, OBJID_CLIENT);
            return told.RoleOf(window.Child(id).Handle()).value_or(0);
        };
        if (name == "the panel") {
            EXPECT_EQ(role(IDC_BUTTON + 1), ROLE_SYSTEM_PUSHBUTTON);
            EXPECT_EQ(role(IDC_TAB_HEADER + 1), ROLE_SYSTEM_PAGETAB);
        }
        if (name != "About") return;
        EXPECT_EQ(role(frmMsg_SupportLink), ROLE_SYSTEM_LINK);
        EXPECT_EQ(role(frmMsg_WebLink), ROLE_SYSTEM_LINK);
        EXPECT_EQ(role(frmMsg_b2), 0) << "a button as any other";
    });
}

}  // namespace
}  // namespace app
