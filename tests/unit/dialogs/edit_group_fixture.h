// The editor of a group over a configuration file of its own.
#pragma once

#include "config/ini.h"
#include "dialogs/edit_group.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/pickers.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "win/dialog.h"
#include "win/handles.h"
#include "win/text.h"

namespace dialogs {

using testkit::ModalAnswers, testkit::Window;

class EditGroupTest : public ::testing::Test {
  protected:
    static Window List(Window dialog) { return dialog.Child(frmEditB::pBasket); }
    static void SelectRow(Window dialog, int row) {
        List(dialog).Send(WM_KEYDOWN, VK_HOME);
        for (int index = 0; index < row; ++index)
            List(dialog).Send(WM_KEYDOWN, VK_DOWN);
    }

    EditGroupTest() {
        win::SetMainWindow(owner_.Handle());
        testkit::AnswerPickers(fakes_, [this](testkit::Picker) {
            enabledMeanwhile_ = IsWindowEnabled(win::ModalOwner()) != 0;
            return picked_;
        });
    }
    ~EditGroupTest() override { win::SetMainWindow(nullptr); }

    /// Replaces the configuration file and reads the record table from it.
    void Load(std::string_view ini) {
        folder_.WriteIniText(ini);
        context_.Records.LoadButtonRecords();
    }
    /// Opens the editor on a group; the steps answer it and what it opens.
    void Edit(const std::string& name, std::vector<ModalAnswers::Step> steps) {
        const ModalAnswers user(std::move(steps));
        editor_.PrepareWindow(name);
        editor_.Show(owner_.Handle());
    }
    /// Opens the editor for one step and cancels it.
    void Look(const std::string& name, const ModalAnswers::Step& step) {
        Edit(name, {ThenPress(step, frmEditB::c1 + 3)});
    }
    /// Edits and applies.
    void EditAndApply(const std::string& name, const std::function<void(Window)>& act) {
        Edit(name, {ThenPress(act, frmEditB::c1 + 2)});
    }
    /// Answers the note that says so, and cancels the editor, which is still open.
    static void CannotBeMade(Window box) {
        EXPECT_EQ(box.Child(frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
        EXPECT_EQ(box.Owner().Text(), "Edit group");
        box.Owner().PostPress(frmEditB::c1 + 3);
        box.Press(frmMsg::b1);
    }
    std::string Stored(const std::string& name) const {
        return folder_.IniValue("Cuts", name).value_or("none");
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow owner_;
    std::string picked_;
    bool enabledMeanwhile_ = true;
    testkit::RecordedCalls fakes_;
    model::ButtonContext context_;
    frmEditB editor_{context_};
};

}  // namespace dialogs
