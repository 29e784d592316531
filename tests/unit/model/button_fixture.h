#pragma once

#include "model/button_shortcut.h"
#include "tests/support/unit_test.h"
#include "win/picture_box.h"

namespace model {

/// A button of 102 x 90 pixels on a window that is never shown, and a configuration file of its own.
class ButtonFixture : public ::testing::Test {
  protected:
    ButtonFixture() {
        box_.CreateOn(parent_.Handle(), 201, {0, 0, 102, 90});
        button_.SetParentButton(&box_);
    }

    /// Replaces the configuration file and reads the record table from it.
    void Load(std::string_view ini) {
        folder_.WriteIniText(ini);
        context_.Records.LoadButtonRecords();
    }

    /// Gives button 11 this record and these other sections.
    void LoadRecord(const std::string& record, const std::string& sections) {
        Load("[Buttons]\r\n11=" + record + "\r\n" + sections);
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow parent_;
    win::PictureBox box_;
    ButtonContext context_;
    testkit::CallLog log_;
    CButtonShortcut button_{context_, [this] { log_.Add("refill"); }};
};

}  // namespace model
