// Buttons without a window, over a configuration file of their own.
#pragma once

#include "app/add_to_button.h"
#include "config/settings.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/unit_test.h"
#include "win/com.h"

namespace app {

class AddToButtonFixture : public ::testing::Test {
  protected:
    AddToButtonFixture() {
        config::Settings = {};
        config::Settings.CurrentTab = 2;
        state_.RefillList = [this] { log_.Add("refill"); };
        state_.TipButton = 5;
    }
    ~AddToButtonFixture() override { config::Settings = before_; }

    /// Fills the file, reads the records and shows the tab's buttons.
    void Start(const std::string& ini) {
        folder_.WriteIniText(ini);
        state_.Context.Records.LoadButtonRecords();
        for (int index = 1; index <= model::kButtonCount; ++index)
            state_.Button(index).RefreshButton(model::ButtonPlace{config::Settings.CurrentTab, index}.Key());
        state_.Context.Select(1);
        log_.Clear();
    }

    /// From now on every write and every message box stands in the log; boxes are answered in this order:
    /// by the button with this caption, by closing the box for "", else by typing a group's name.
    void Record(const std::vector<std::string>& answers = {}) {
        std::vector<testkit::ModalAnswers::Step> steps;
        for (const std::string& answer : answers)
            steps.emplace_back([answer](testkit::Window box) { Answer(box, answer); });
        answers_.emplace(std::move(steps));
        calls_.push_back(
            WATCH_CALL(WritePrivateProfileStringA, [this](LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR) {
                log_.Add(section, key, "=", value);
            }));
        calls_.push_back(WATCH_CALL(DialogBoxIndirectParamW, [this] { log_.Add("message box"); }));
    }
    void StopRecording() {
        calls_.clear();
        answers_.reset();
        log_.Clear();
    }

    /// Begins with free buttons, and with the log.
    void StartFree() {
        Start("[Settings]\r\n");
        Record();
    }

    bool Add(std::string target, std::string name, std::string commandSwitch = {}) {
        return AddToButton(state_, state_.CurrentPlace(), target, name, commandSwitch);
    }

    std::optional<std::string> Ini(const std::string& section, const std::string& key) const {
        return folder_.IniValue(section, key);
    }

    const win::OleThread ole_;
    const testkit::ProgramFolder folder_;
    const testkit::ScopedIniPath path_{folder_.IniPath()};
    const std::string file_ = folder_.MakeFile("Заметки.txt");
    const std::string other_ = folder_.MakeFile("文書.txt");
    testkit::CallLog log_;
    testkit::RecordedCalls calls_;
    PanelState state_;

  private:
    static void Answer(testkit::Window box, const std::string& answer) {
        if (answer.empty()) {
            box.Post(WM_CLOSE);
            return;
        }
        for (const int id : {dialogs::frmMsg::b1 + 0, dialogs::frmMsg::b1 + 1, dialogs::frmMsg::b1 + 2}) {
            const testkit::Window button = box.Child(id);
            // "Create group" itself is a name to type.
            if (button.Text() != answer || answer == "Create group") continue;
            button.Send(BM_CLICK);
            return;
        }
        box.Child(dialogs::frmMsg::Text1).SetText(answer);
        box.Press(dialogs::frmMsg::b1);
    }

    const config::SettingsRecord before_ = config::Settings;
    std::optional<testkit::ModalAnswers> answers_;
};

}  // namespace app
