// The program killed in the middle of a busy session: what was stored before is whole afterwards, and what
// the last command stores at once is there as a whole or not at all.
//
// Every second kill is aimed: it comes a moment after the last command has begun to write. The others come at
// any moment of that command. Three kills in short sessions; QUON_KILLS=100 makes as many, each in a session
// of up to 50 commands, or of as many as QUON_COMMANDS says. QUON_SEED=7 gives other commands and moments.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/program/busy_session.h"

namespace testkit {
namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;

bool operator==(const FILETIME& one, const FILETIME& other) { return CompareFileTime(&one, &other) == 0; }

/// Looks for the moment at which a program begins to write.
class WritingWatch {
  public:
    WritingWatch(const ProgramFolder& folder, DWORD process)
        : ini_(Wide(folder.IniPath())),
          // A unit's file has the process's number in its name.
          side_(ini_ + L".unit-" + std::to_wstring(process) + L"-1"),
          before_(Stamp()) {}

    bool IsWriting() const {
        return GetFileAttributesW(side_.c_str()) != INVALID_FILE_ATTRIBUTES || !(Stamp() == before_);
    }

  private:
    FILETIME Stamp() const {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        GetFileAttributesExW(ini_.c_str(), GetFileExInfoStandard, &data);
        return data.ftLastWriteTime;
    }

    std::wstring ini_;
    std::wstring side_;
    FILETIME before_;
};

/// Ends a process after a time: at once measured from the beginning, or from when it begins to write, if it
/// does that while this object lives.
class Killer {
  public:
    Killer(HANDLE process, Microseconds time, std::optional<WritingWatch> watch)
        : thread_([this, process, time, watch = std::move(watch)] {
              while (watch && !over_) {
                  saw_writing_ = watch->IsWriting();
                  if (saw_writing_) break;
                  std::this_thread::yield();
              }
              // Sleeping would take a step of the clock.
              for (const auto end = Clock::now() + time; Clock::now() < end;)
                  std::this_thread::yield();
              TerminateProcess(process, 1);
              WaitForSingleObject(process, INFINITE);
          }) {}
    ~Killer() { Join(); }
    Killer(const Killer&) = delete;
    Killer& operator=(const Killer&) = delete;

    /// Waits for the end; it comes now if nothing has been written.
    void Join() {
        over_ = true;
        if (thread_.joinable()) thread_.join();
    }
    bool SawWriting() const { return saw_writing_; }

  private:
    std::atomic<bool> over_ = false;
    std::atomic<bool> saw_writing_ = false;
    std::thread thread_;
};

/// What is wrong with the records after a kill during `command`; "" when every other record is as it was, and
/// those that the command changes are as before or as after it.
std::string Damage(const Records& before, const Command& command, const Records& found) {
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

int Number(const char* name, int otherwise) {
    const std::string text = EnvironmentValue(name);
    return text.empty() ? otherwise : std::stoi(text);
}

class KillTest : public ::testing::Test {
  protected:
    /// One session to its kill, and the start after it. Gives the damage, with the session's name.
    std::string RunToKill(unsigned seed, int commands, bool aimed);

    struct Count {
        int kills = 0;
        int saw_writing = 0;  ///< the command had begun to write
        int in_a_write = 0;   ///< it had not finished: its unit's file was still there
        int damaged = 0;
    };
    Count& Of(bool aimed) { return aimed ? aimed_ : random_; }
    static void Print(const char* name, const Count& count) {
        std::cout << count.kills << " " << name << " kills: " << count.in_a_write << " in a write, "
                  << count.damaged << " with damage\n";
    }

    Count aimed_;
    Count random_;

  private:
    void LetRun(BusySession& session, int commands);
    std::string DamageOf(const ProgramFolder& folder, const Records& before, const Command& command);

    Microseconds usual_{50000};
};

void KillTest::LetRun(BusySession& session, int commands) {
    for (int index = 0; index < commands; ++index) {
        const auto begin = Clock::now();
        session.Run(session.Next());
        usual_ = (9 * usual_ + std::chrono::duration_cast<Microseconds>(Clock::now() - begin)) / 10;
    }
}

/// What the killed program has left, and what the next one makes of it.
std::string KillTest::DamageOf(const ProgramFolder& folder, const Records& before, const Command& command) {
    std::string what = Damage(before, command, RecordsOf(folder.Ini()));
    try {
        QuonPanel again(folder);
        if (const DWORD code = again.Program().CloseAndWait(); code != 0)
            what += "the next run ended with " + std::to_string(code) + "\n";
    } catch (const std::exception& error) {
        what += std::string("the next start failed: ") + error.what() + "\n";
    }
    what += Damage(before, command, RecordsOf(folder.Ini()));
    if (HasSideFile(folder)) what += "a side file was left behind\n";
    return what;
}

std::string KillTest::RunToKill(unsigned seed, int commands, bool aimed) {
    std::mt19937 random(seed);
    const auto below = [&](Microseconds time) {
        return Microseconds(random() % static_cast<unsigned>(time.count()));
    };
    const ProgramFolder folder("quon-kill");
    folder.WriteIniText(FilledIni().Text());
    const int last = static_cast<int>(random() % static_cast<unsigned>(commands));
    Records before;
    Command command;
    {
        BusySession session(folder, seed);
        LetRun(session, last);
        command = session.NextThatWrites();
        before = session.Expected();
        const RunningProgram& program = session.Quon().Program();
        std::optional<WritingWatch> watch;
        if (aimed) watch.emplace(folder, program.Id());
        // A write takes about three milliseconds, what is done by hand a second.
        constexpr Microseconds kWrite{4000};
        constexpr Microseconds kByHand{1500000};
        const Microseconds span = aimed ? kWrite : command.by_hand ? kByHand : usual_;
        Killer killer(program.Handle(), below(span), watch);
        try {
            session.Run(command);
            // It was over before the kill.
            before = session.Expected();
            command.changes.clear();
        } catch (const ProgramIsGone&) {
        }
        killer.Join();
        if (killer.SawWriting()) ++Of(aimed).saw_writing;
    }
    ++Of(aimed).kills;
    const bool in_a_write = HasSideFile(folder);
    if (in_a_write) ++Of(aimed).in_a_write;
    const std::string damage = DamageOf(folder, before, command);
    if (!damage.empty()) ++Of(aimed).damaged;
    const std::string name = "seed " + std::to_string(seed) + ", command " + std::to_string(last) + ", " +
                             command.name + (in_a_write ? ", in a write" : "");
    std::cout << name << std::endl;
    return damage.empty() ? damage : name + ":\n" + damage;
}

TEST_F(KillTest, LeavesEveryCompleteRecordWholeAndTheNextStartWorks) {
    constexpr int kShortSession = 12;
    constexpr int kLongSession = 50;
    constexpr int kShortRun = 3;
    const int kills = Number("QUON_KILLS", kShortRun);
    const auto seed = static_cast<unsigned>(Number("QUON_SEED", 1));
    const int commands =
        Number("QUON_COMMANDS", EnvironmentValue("QUON_KILLS").empty() ? kShortSession : kLongSession);
    for (int kill = 0; kill < kills; ++kill)
        EXPECT_EQ(RunToKill(seed * 1000 + static_cast<unsigned>(kill), commands, kill % 2 == 1), "");
    Print("aimed", aimed_);
    Print("random", random_);
    EXPECT_EQ(aimed_.saw_writing, aimed_.kills) << "a command did not write, or nobody saw it";
    // A single one may come too late on a busy machine.
    constexpr int kMany = 10;
    if (aimed_.kills >= kMany) {
        EXPECT_GT(aimed_.in_a_write, aimed_.kills / kMany)
            << "the kills are not aimed at the writes any more";
    }
}

}  // namespace
}  // namespace testkit
