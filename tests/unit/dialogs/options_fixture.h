// The options dialog over a main window that only takes notes. No entry of the registry is touched: its calls
// are recorded and answered.
#pragma once

#include "config/settings.h"
#include "dialogs/options.h"
#include "tests/unit/dialogs/dialog_parts.h"
#include "win/errors.h"

namespace dialogs {

using testkit::Press;

inline constexpr int kDelayBox = frmSettings::Text1;
inline constexpr int kCancelButton = frmSettings::ltBut1 + frmSettings::kCancel;
inline constexpr int kAcceptButton = frmSettings::ltBut1 + frmSettings::kAccept;
inline constexpr int kWarningFrame = frmSettings::Picture2;

inline std::vector<std::pair<HWND, std::string>>& Reports() {
    static std::vector<std::pair<HWND, std::string>> reports;
    return reports;
}

inline void CloseByTitleBar(testkit::Window dialog) { dialog.Send(WM_SYSCOMMAND, SC_CLOSE); }

inline bool IsChecked(testkit::Window dialog, int id) {
    return dialog.Child(id).Send(BM_GETCHECK) == BST_CHECKED;
}

class OptionsFixture : public ::testing::Test {
  protected:
    OptionsFixture() {
        config::Settings = {};
        config::Settings.Edge = 1;
        // No pointer may rest where the dialog comes up: its explanations follow the pointer.
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        // One of them is on, so that no click brings up the note.
        config::Settings.ClickShows = true;
        Reports().clear();
        win::SetErrorReporter(
            +[](HWND owner, const char* message) noexcept { Reports().emplace_back(owner, message); });
        fakes_.push_back(
            FAKE_CALL(RegOpenKeyExA,
                      [this](HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY key) -> LSTATUS {
                          EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
                          registry_.Add("open", path, options,
                                        access == KEY_ALL_ACCESS  ? "all"
                                        : access == KEY_SET_VALUE ? "set"
                                                                  : "other");
                          *key = openAnswer_ == ERROR_SUCCESS ? kKey : nullptr;
                          return openAnswer_;
                      }));
        fakes_.push_back(FAKE_CALL(RegSetValueExA,
                                   [this](HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                                          DWORD size) -> LSTATUS {
                                       EXPECT_EQ(key, kKey);
                                       registry_.Add("set", name, reserved, type,
                                                     reinterpret_cast<const char*>(data), size);
                                       return writeAnswer_;
                                   }));
        fakes_.push_back(FAKE_CALL(RegDeleteValueA, [this](HKEY key, LPCSTR name) -> LSTATUS {
            EXPECT_EQ(key, kKey);
            registry_.Add("delete", name);
            return writeAnswer_;
        }));
        fakes_.push_back(FAKE_CALL(RegCloseKey, [this](HKEY key) -> LSTATUS {
            if (key != kKey) return ORIGINAL_CALL(RegCloseKey)(key);
            registry_.Add("close");
            return ERROR_SUCCESS;
        }));
    }
    ~OptionsFixture() override {
        config::Settings = {};
        win::SetErrorReporter(nullptr);
    }

    void Open() { frmSettings(host_).Open(); }
    /// Opens the dialog for one step, which closes it.
    void Open(const testkit::ModalAnswers::Step& step) {
        testkit::ModalAnswers user({step});
        Open();
    }

    /// Opens the dialog for one step and cancels or accepts it.
    void Look(const testkit::ModalAnswers::Step& step) { Open(ThenPress(step, kCancelButton)); }
    void Accept(const testkit::ModalAnswers::Step& step) { Open(ThenPress(step, kAcceptButton)); }

    inline static const HKEY kKey = reinterpret_cast<HKEY>(0x4711);
    RecordedHost host_;
    testkit::CallLog registry_;
    LSTATUS openAnswer_ = ERROR_SUCCESS;
    LSTATUS writeAnswer_ = ERROR_SUCCESS;
    testkit::RecordedCalls fakes_;
};

}  // namespace dialogs
