// The commands of a button's menu, with the shell's part played by the test.
#pragma once

#include "app/button_commands.h"
#include "dialogs/message_box.h"
#include "tests/support/pickers.h"
#include "tests/support/program_calls.h"
#include "tests/support/unit_test.h"
#include "tests/unit/app/panel_parts.h"
#include "win/window.h"

namespace app {

class ButtonCommandsFixture : public PanelParts {
  protected:
    ButtonCommandsFixture() {
        commands_.Attach(host_.Handle());
        ShowWindow(host_.Handle(), SW_SHOWNOACTIVATE);
        RecordShell();
        RecordWindow();
    }

    void RecordShell() {
        testkit::AnswerPickers(fakes_, [this](testkit::Picker picker) {
            NoteQuestion(picker == testkit::Picker::kFile ? "file?" : "folder?");
            return answer_;
        });
        fakes_.push_back(FAKE_CALL(SHFileOperationA, [this](LPSHFILEOPSTRUCTA record) {
            NoteQuestion("operation " + std::to_string(record->wFunc) + " " + record->pFrom + " > " +
                         (record->pTo != nullptr ? record->pTo : "nowhere"));
            return result_;
        }));
        fakes_.push_back(FAKE_CALL(ShellExecuteExA, [this](SHELLEXECUTEINFOA* record) -> BOOL {
            log_.Add("properties", record->lpFile);
            return TRUE;
        }));
        fakes_.push_back(testkit::LogStarts(log_));
        fakes_.push_back(
            WATCH_CALL(WritePrivateProfileStringA, [this](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR) {
                if (std::string_view(name) == "Buttons") log_.Add("write", key, value);
            }));
    }

    void RecordWindow() {
        fakes_.push_back(
            WATCH_CALL(SetWindowPos, [this](HWND window, HWND after, int, int, int, int, UINT flags) {
                if (window == host_.Handle() && (flags & SWP_NOMOVE) != 0)
                    log_.Add(after == HWND_TOPMOST ? "topmost" : "not topmost");
            }));
    }

    /// A window of the system is open: the panel must be out of its way, and events run.
    void NoteQuestion(const std::string& what) {
        log_.Add(what);
        EXPECT_FALSE(IsWindowEnabled(host_.Handle())) << what;
        EXPECT_FALSE(testkit::Window(host_.Handle()).IsTopmost()) << what;
        if (meanwhile_) meanwhile_();
    }

    /// A button of tab 1 with a single target.
    void LoadSingle(const std::string& target) {
        Load("[Buttons]\r\n11=Име|2\r\n[Cuts]\r\nИме=" + target + "\r\n");
        win::SetTopmost(true, host_.Handle());
        log_.Clear();
    }

    /// Carries a file command out on the current button, which ends with a note of this text.
    void RunAndRead(int command, const std::string& note) {
        const testkit::ModalAnswers user({testkit::Note(note)});
        commands_.RunFileCommand(command, state_.CurrentPlace());
    }

    static constexpr const char* kDone = "Operation completed.";
    static constexpr const char* kFailed = "Couldn't perform the operation, sorry.";

    std::string answer_;
    int result_ = 0;
    std::function<void()> meanwhile_;
    ButtonCommands commands_{state_, dock_};
};

}  // namespace app
