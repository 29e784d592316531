// The program killed in the middle of a busy session: what was stored before is whole afterwards.
//
// Three kills in short sessions; QUON_KILLS=100 makes as many, each at any moment of a session of 200
// commands, or of as many as QUON_COMMANDS says. QUON_SEED=7 gives other commands and moments.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/program/quon_panel.h"

namespace testkit {
namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;
using Section = std::map<std::string, std::string>;

constexpr const char* kSections[] = {"Settings", "Buttons", "Cuts", "Switch"};
constexpr int kTabs = 3;
constexpr int kButtons = 9;
constexpr UINT kTabLabel = frmTabPrep_Text1 + 0;
constexpr UINT kTabApply = frmTabPrep_Command1 + 0;

/// What stands in Quon.ini, by section and key.
using Records = std::map<std::string, Section>;

Records RecordsOf(const IniText& ini) {
    Records records;
    for (const char* section : kSections)
        for (const auto& [key, value] : ini.Entries(section)) {
            if (!records[section].emplace(key, value).second) records[section][key] += " (twice)";
        }
    return records;
}

/// A record that a command changes; no value stands for a record that is not there.
struct Change {
    std::string section;
    std::string key;
    std::optional<std::string> after;
};

struct Command {
    std::string name;
    std::vector<Change> changes;
    /// Whether all of them are stored together.
    bool at_once = false;
    std::function<void()> run;
};

class ProgramIsGone : public std::exception {};

std::optional<std::string> Find(const Records& records, const std::string& section, const std::string& key) {
    const auto place = records.find(section);
    if (place == records.end()) return std::nullopt;
    const auto record = place->second.find(key);
    return record == place->second.end() ? std::nullopt : std::optional(record->second);
}

void Apply(Records& records, const std::vector<Change>& changes) {
    for (const auto& [section, key, after] : changes) {
        if (after)
            records[section][key] = *after;
        else
            records[section].erase(key);
    }
}

/// A panel with two full tabs and one of free buttons.
QuonIni FilledIni() {
    QuonIni ini;
    ini.click_shows = true;
    for (int tab = 1; tab <= kTabs; ++tab) {
        ini.buttons.emplace_back(std::to_string(10 * tab),
                                 "Tab " + std::to_string(tab) + "|with a description");
        for (int button = 1; button <= kButtons; ++button) {
            const std::string key = std::to_string(10 * tab + button);
            const std::string target = "http://example.test/?q=" + key + "&p=ž";
            if (tab == kTabs)
                ini.buttons.emplace_back(key, "");
            else
                ini.AddShortcut(key, "Пречица " + key, button == kButtons ? target + "|" + target : target,
                                button % 3 == 0 || button == kButtons ? "" : "/x=" + key);
        }
    }
    ini.cuts.emplace_back("Without a button", "http://example.test/");
    return ini;
}

/// A running panel that is given commands by messages, and what Quon.ini has to hold after each of them.
class BusySession {
  public:
    BusySession(const ProgramFolder& folder, unsigned seed)
        : quon_(folder), records_(RecordsOf(folder.Ini())), random_(seed) {
        quon_.Main().Activate();
    }

    /// A command that is possible now; nothing of it has been done yet.
    Command Next() {
        const unsigned kind = random_() % 20;
        const int button = 1 + static_cast<int>(random_() % kButtons);
        if (kind < 2) return SwitchTab(1 + static_cast<int>(random_() % kTabs));
        if (kind < 5) return DefineTab(1 + static_cast<int>(random_() % kTabs));
        const std::optional<std::string> record = Find(records_, "Buttons", Key(button));
        if (!record || record->empty()) return SwitchTab(1 + static_cast<int>(random_() % (kTabs - 1)));
        const std::string name = record->substr(0, record->find('|'));
        if (kind < 6 && freed_ < kMostFreed) return Free(button, name);
        if (kind < 7 && freed_ < kMostFreed) return Delete(button, name);
        return Rename(button, name);
    }

    /// Runs it to its end, or throws ProgramIsGone.
    void Run(const Command& command) {
        try {
            command.run();
        } catch (const std::exception&) {
            if (quon_.Program().IsRunning()) throw;
            throw ProgramIsGone();
        }
        Apply(records_, command.changes);
    }

    QuonPanel& Quon() { return quon_; }
    const Records& Expected() const { return records_; }

  private:
    static constexpr int kMostFreed = 6;

    std::string Key(int button) const { return std::to_string(10 * tab_ + button); }

    /// Waits until the condition holds or the program has gone.
    void Await(const std::string& what, const std::function<bool()>& condition) {
        WaitFor(what, [&] { return !quon_.Program().IsRunning() || condition(); });
        if (!quon_.Program().IsRunning()) throw ProgramIsGone();
    }
    static void PostClick(Window window, UINT down, UINT up) {
        window.Post(down, 0, MAKELPARAM(4, 4));
        window.Post(up, 0, MAKELPARAM(4, 4));
    }
    void Point(int button) { quon_.Button(button).Post(WM_MOUSEMOVE, 0, MAKELPARAM(20, 20)); }

    Command SwitchTab(int tab) {
        const auto run = [this, tab] {
            PostClick(quon_.Header(tab), WM_LBUTTONDOWN, WM_LBUTTONUP);
            tab_ = tab;
            for (int button = 1; button <= kButtons; ++button) {
                const std::string record = Find(records_, "Buttons", Key(button)).value_or("");
                const std::string name = record.empty() ? "Empty" : record.substr(0, record.find('|'));
                Await("the tab is shown", [&] { return quon_.Button(button).Text() == name; });
            }
        };
        return {"show tab " + std::to_string(tab), {}, true, run};
    }

    Command DefineTab(int tab) {
        // A label holds seven characters, however long the session.
        const std::string label = "T" + std::to_string(tab) + "." + std::to_string(++count_);
        const auto run = [this, tab, label] {
            PostClick(quon_.Header(tab), WM_RBUTTONDOWN, WM_RBUTTONUP);
            Window dialog;
            Await("the dialog", [&] {
                dialog = quon_.Program().FindWindow({.title = "Define tab"});
                return dialog.Exists();
            });
            dialog.Child(kTabLabel).SetText(label);
            dialog.Child(kTabApply).Post(BM_CLICK);
            Await("the dialog closes", [&] { return !dialog.Exists() && quon_.Main().IsEnabled(); });
        };
        return {"define " + label,
                {{"Buttons", std::to_string(10 * tab), label + "|with a description"}},
                true,
                run};
    }

    Command Rename(int button, const std::string& former) {
        const std::string name = "Преименована " + std::to_string(++count_);
        std::vector<Change> changes{{"Buttons", Key(button), name + "|0"}};
        for (const char* section : {"Cuts", "Switch"}) {
            const std::optional<std::string> value = Find(records_, section, former);
            if (!value) continue;
            changes.push_back({section, former, std::nullopt});
            changes.push_back({section, name, value});
        }
        const auto run = [this, button, former, name] {
            Point(button);
            quon_.Button(button).Post(WM_KEYDOWN, VK_F2);
            Await("the box",
                  [&] { return quon_.RenameBox().IsVisible() && quon_.RenameBox().Text() == former; });
            quon_.RenameBox().SetText(name);
            quon_.RenameBox().Post(WM_KEYDOWN, VK_RETURN);
            Await("the new name",
                  [&] { return quon_.Button(button).Text() == name && !quon_.RenameBox().IsVisible(); });
        };
        return {"rename " + former + " to " + name, changes, true, run};
    }

    Command Free(int button, const std::string& name) {
        ++freed_;
        const auto run = [this, button] {
            constexpr int kFreeButton = 4;
            PostClick(quon_.Button(button), WM_RBUTTONDOWN, WM_RBUTTONUP);
            Await("the menu", [&] { return PopupMenu::OpenCount(quon_.Id()) == 1; });
            for (int row = 0; row < kFreeButton; ++row)
                quon_.Main().Post(WM_KEYDOWN, VK_DOWN);
            quon_.Main().Post(WM_KEYDOWN, VK_RETURN);
            Await("the button is free", [&] { return quon_.Button(button).Text() == "Empty"; });
        };
        return {"free " + name,
                {{"Buttons", Key(button), ""}, {"Cuts", name, std::nullopt}, {"Switch", name, std::nullopt}},
                true,
                run};
    }

    /// Deletes a button's shortcut in the organiser; its switch stays.
    Command Delete(int button, const std::string& name) {
        ++freed_;
        const auto run = [this, button, name] {
            PostClick(quon_.ImageButton(2), WM_LBUTTONDOWN, WM_LBUTTONUP);
            Await("the menu", [&] { return PopupMenu::OpenCount(quon_.Id()) == 1; });
            for (const WPARAM key : {VK_DOWN, VK_RETURN})
                quon_.Main().Post(WM_KEYDOWN, key);
            const Window organiser =
                AwaitDialog("Organize shortcuts - " + ShortcutCount() + " shortcuts found");
            const Window list = organiser.Child(frmCuts_pBasket);
            list.Post(WM_KEYDOWN, VK_HOME);
            for (std::string before; list.Text() != name; before = list.Text()) {
                list.Post(WM_KEYDOWN, VK_DOWN);
                Await("the next row", [&] { return list.Text() != before || list.Text() == name; });
            }
            organiser.Child(frmCuts_Command1 + 1).Post(BM_CLICK);
            Window question;
            Await("the question", [&] {
                question =
                    quon_.Program().FindWindow({.class_name = "#32770", .title = MessageBoxWindow::kCaption});
                return question.Exists() && question.Owner() == organiser;
            });
            question.Child(frmMsg_b1).Post(BM_CLICK);
            Await("the row goes", [&] { return !question.Exists() && organiser.IsEnabled(); });
            organiser.Post(WM_COMMAND, IDCANCEL);
            Await("the button is free", [&] { return quon_.Button(button).Text() == "Empty"; });
            Await("the organiser closes", [&] { return !organiser.Exists() && quon_.Main().IsEnabled(); });
            // The panel has docked out of its way.
            quon_.Main().Post(WM_LBUTTONDOWN, 0, MAKELPARAM(1, 1));
            Await("the panel comes out", [&] { return quon_.IsOut(); });
        };
        return {"delete " + name, {{"Buttons", Key(button), ""}, {"Cuts", name, std::nullopt}}, true, run};
    }

    Window AwaitDialog(const std::string& title) {
        Window dialog;
        Await(title, [&] {
            dialog = quon_.Program().FindWindow({.title = title});
            return dialog.Exists();
        });
        return dialog;
    }
    std::string ShortcutCount() const { return std::to_string(records_.at("Cuts").size()); }

    QuonPanel quon_;
    Records records_;
    std::mt19937 random_;
    int tab_ = 1;
    int count_ = 0;
    int freed_ = 0;
};

/// Ends a process after a time, unless it is called off before.
class Killer {
  public:
    Killer(HANDLE process, Microseconds delay)
        : thread_([=] {
              const auto moment = Clock::now() + delay;
              while (Clock::now() < moment)
                  std::this_thread::yield();
              TerminateProcess(process, 1);
              WaitForSingleObject(process, INFINITE);
          }) {}
    ~Killer() { thread_.join(); }
    Killer(const Killer&) = delete;
    Killer& operator=(const Killer&) = delete;

  private:
    std::thread thread_;
};

/// How the records differ, a line each; "" when they do not.
std::string Differences(const Records& expected, const Records& found) {
    std::string lines;
    for (const char* section : kSections) {
        Section keys = expected.contains(section) ? expected.at(section) : Section();
        if (found.contains(section)) keys.insert(found.at(section).begin(), found.at(section).end());
        for (const auto& [key, unused] : keys) {
            const auto wanted = Find(expected, section, key);
            const auto there = Find(found, section, key);
            if (wanted != there)
                lines += std::string(section) + " " + key + ": \"" + there.value_or("(none)") +
                         "\" instead of \"" + wanted.value_or("(none)") + "\"\n";
        }
    }
    return lines;
}

/// What is wrong with the records after a kill during `command`; "" when every other record is as it was, and
/// each that the command changes as before or as after it.
std::string Damage(const Records& before, const Command& command, Records found) {
    Records after = before;
    Apply(after, command.changes);
    if (command.at_once) {
        const std::string old_state = Differences(before, found);
        return old_state.empty() || Differences(after, found).empty() ? "" : old_state;
    }
    // Each change by itself: a record that may be either old or new is not compared.
    Records expected = before;
    for (const auto& [section, key, value] : command.changes) {
        if (Find(found, section, key) == value) Apply(expected, {{section, key, value}});
    }
    return Differences(expected, found);
}

class KillTest : public ::testing::Test {
  protected:
    static int Number(const char* name, int otherwise) {
        const std::string text = EnvironmentValue(name);
        return text.empty() ? otherwise : std::stoi(text);
    }

    /// One session to its kill, and the start after it. Gives the damage.
    std::string RunToKill(const ProgramFolder& folder, unsigned seed, int commands);

    int kills_in_a_write_ = 0;
    Microseconds usual_{50000};
};

std::string KillTest::RunToKill(const ProgramFolder& folder, unsigned seed, int commands) {
    std::mt19937 random(seed);
    folder.WriteIniText(FilledIni().Text());
    const int last = static_cast<int>(random() % static_cast<unsigned>(commands));
    std::string what;
    Records before;
    Command command;
    {
        BusySession session(folder, seed);
        for (int index = 0; index < last; ++index) {
            const auto begin = Clock::now();
            session.Run(session.Next());
            usual_ = (9 * usual_ + std::chrono::duration_cast<Microseconds>(Clock::now() - begin)) / 10;
        }
        before = session.Expected();
        command = session.Next();
        const Killer killer(session.Quon().Program().Handle(),
                            Microseconds(random() % static_cast<unsigned>(usual_.count())));
        try {
            session.Run(command);
            // It was over before the kill.
            before = session.Expected();
            command.changes.clear();
        } catch (const ProgramIsGone&) {
        }
    }
    if (RecordsOf(folder.Ini()) != before) ++kills_in_a_write_;
    try {
        QuonPanel again(folder);
        if (const DWORD code = again.Program().CloseAndWait(); code != 0)
            what += "the next run ended with " + std::to_string(code) + "\n";
    } catch (const std::exception& error) {
        what += std::string("the next start failed: ") + error.what() + "\n";
    }
    what += Damage(before, command, RecordsOf(folder.Ini()));
    if (HasSideFile(folder)) what += "a side file was left behind\n";
    return what.empty() ? what
                        : "seed " + std::to_string(seed) + ", in command " + std::to_string(last) + ", " +
                              command.name + ":\n" + what;
}

TEST_F(KillTest, LeavesEveryCompleteRecordWholeAndTheNextStartWorks) {
    constexpr int kShortSession = 12;
    constexpr int kLongSession = IDC_BUTTON + 0;
    constexpr int kShortRun = 3;
    const int kills = Number("QUON_KILLS", kShortRun);
    const auto seed = static_cast<unsigned>(Number("QUON_SEED", 1));
    const int commands =
        Number("QUON_COMMANDS", EnvironmentValue("QUON_KILLS").empty() ? kShortSession : kLongSession);
    int damaged = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const ProgramFolder folder("quon-kill");
        const std::string damage = RunToKill(folder, seed * 1000 + static_cast<unsigned>(kill), commands);
        if (!damage.empty()) ++damaged;
        EXPECT_EQ(damage, "");
        if (kills > kShortRun)
            std::cout << "kill " << kill + 1 << ": " << (damage.empty() ? "whole" : "damaged") << std::endl;
    }
    std::cout << kills << " kills, " << kills_in_a_write_ << " in the middle of a command's writes, "
              << damaged << " with damage\n";
}

}  // namespace
}  // namespace testkit
