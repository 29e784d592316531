// The menus of the panel on a window of their own, in a program folder that is empty but for what a test puts
// there. What they open and start is recorded, not done.
#pragma once

#include "app/panel_menus.h"
#include "config/settings.h"
#include "model/launching.h"
#include "res/resource.h"
#include "tests/support/program_calls.h"
#include "tests/support/unit_test.h"

namespace app {

inline std::vector<std::string> Captions(const win::MenuArray& menu) {
    std::vector<std::string> captions;
    for (int index = 0; index < menu.Count(); ++index)
        captions.push_back(menu[index].caption);
    return captions;
}

class PanelMenusFixture : public ::testing::Test {
  protected:
    PanelMenusFixture() {
        config::Settings = {};
        model::DefaultBrowserPath = "C:\\прегледач.exe";
        fakes_.push_back(testkit::ProgramLiesAt(folder_.FullPath("Quon.exe")));
        fakes_.push_back(FAKE_CALL(ShellExecuteA, [this](HWND owner, LPCSTR verb, LPCSTR file,
                                                         LPCSTR parameters, LPCSTR folder, INT show) {
            EXPECT_EQ(owner, GetDesktopWindow());
            log_.Add("open", verb, file, parameters, folder, show);
            return reinterpret_cast<HINSTANCE>(33);
        }));
        fakes_.push_back(testkit::LogStarts(log_));
        fakes_.push_back(FAKE_CALL(Sleep, [this](DWORD time) { log_.Add("Sleep", time); }));
        fakes_.push_back(FAKE_CALL(GetLogicalDriveStringsA, [](DWORD, LPSTR roots) -> DWORD {
            std::copy_n("C:\\\0", 5, roots);
            return 4;
        }));
        fakes_.push_back(FAKE_CALL(TrackPopupMenu, [this](HMENU, UINT, int x, int y, int, HWND, const RECT*) {
            at_ = {x, y};
            return chosen_;
        }));
        dock_.Attach(host_.Handle());
        menus_.CreateOn(host_.Handle());
    }
    ~PanelMenusFixture() override { config::Settings = {}; }

    testkit::Window ImageButton(int index) {
        return testkit::Window(host_.Handle()).Child(IDC_IMAGE_BUTTON + index);
    }
    /// Clicks an image button and chooses a command of its menu.
    void Choose(int button, int command) {
        chosen_ = command;
        log_.Clear();
        ImageButton(button).SendClick();
    }
    std::string Root() const { return folder_.Path().substr(0, 3); }

    testkit::ProgramFolder folder_;
    testkit::HiddenWindow host_;
    testkit::CallLog log_;
    int chosen_ = 0;
    POINT at_{};
    testkit::RecordedCalls fakes_;
    EdgeDock dock_;
    PanelMenus menus_{dock_};
};

}  // namespace app
