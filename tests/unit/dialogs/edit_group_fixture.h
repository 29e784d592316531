// The editor of a group over a configuration file of its own.
#pragma once

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "config/ini.h"
#include "dialogs/edit_group.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/held_file.h"
#include "tests/support/hidden_window.h"
#include "tests/support/modal_answers.h"
#include "tests/support/pickers.h"
#include "tests/support/program_folder.h"
#include "tests/support/recorded_call.h"
#include "tests/support/scoped_ini_path.h"
#include "tests/support/text.h"
#include "tests/support/window.h"
#include "win/dialog.h"
#include "win/handles.h"
#include "win/text.h"

namespace dialogs {

using testkit::ModalAnswers;
using testkit::Window;

class EditGroupTest : public ::testing::Test {
  protected:
    static void Click(Window dialog, int id) { dialog.Child(id).Send(BM_CLICK); }
    static Window List(Window dialog) { return dialog.Child(dialogs::frmEditB::pBasket); }
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
    /// Edits and applies.
    void EditAndApply(const std::string& name, const std::function<void(Window)>& act) {
        Edit(name, {[&](Window dialog) {
                 act(dialog);
                 Click(dialog, dialogs::frmEditB::c1 + 2);
             }});
    }
    /// Answers the note that says so, and cancels the editor, which is still open.
    static void CannotBeMade(Window box) {
        EXPECT_EQ(box.Child(dialogs::frmMsg::l1).Text(), "Couldn't make this shortcut, sorry.");
        EXPECT_EQ(box.Owner().Text(), "Edit group");
        box.Owner().Child(dialogs::frmEditB::c1 + 3).Post(BM_CLICK);
        Click(box, dialogs::frmMsg::b1);
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
