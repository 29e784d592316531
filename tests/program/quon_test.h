// What most tests of the whole program have: a folder for Quon, and what their user does over and over.
#pragma once

#include "tests/program/quon_panel.h"

namespace testkit {

class QuonTest : public ::testing::Test {
  protected:
    /// Starts Quon with this Quon.ini.
    QuonPanel Start(const QuonIni& ini, const StartOptions& options = {}) const {
        folder_.WriteIniText(ini.Text());
        return QuonPanel(folder_, options);
    }
    void WaitForRecord(const std::string& section, const std::string& key, const std::string& value) const {
        WaitFor(section + " " + key + " to be " + value,
                [&] { return folder_.IniValue(section, key) == value; });
    }
    static void WaitUntilClosed(Window dialog) {
        WaitFor("the dialog closes", [&] { return !dialog.Exists(); });
    }
    /// Moves onto a window and a little further: a tip that the first move makes follows the second.
    static void Hover(Window window, const Keys& held = {}) {
        const HeldKeys keys(held);
        const POINT centre = window.Centre();
        mouse::MoveTo(centre);
        window.Send(WM_NULL);
        mouse::MoveTo({centre.x + 2, centre.y + 1});
    }

    ProgramFolder folder_;
};

/// A panel that starts at its edge, the pointer being far from it.
class DockedTest : public QuonTest {
  protected:
    DockedTest() {
        ini_.start_glued = true;
        mouse::MoveTo(kAway);
    }
    QuonPanel Start() const {
        QuonPanel quon = QuonTest::Start(ini_);
        quon.Program().WaitUntilIdle();
        return quon;
    }
    Edge ItsEdge() const { return static_cast<Edge>(ini_.edge); }

    static constexpr POINT kAway{700, 300};
    QuonIni ini_;
};

}  // namespace testkit
