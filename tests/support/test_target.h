// quon_test_target.exe: a program to launch, in order to prove how it was launched.
//
//     const std::string target = folder.CopyIn(TestTargetExe(), "target.exe");
//     ... let Quon open it ...
//     const TargetLaunch launch = WaitForTargetLaunches(target, 1).front();
//     EXPECT_EQ(launch.command_line, "\"" + target + "\" /switch");
//     EXPECT_EQ(launch.work_folder, folder.Path());
//     EXPECT_EQ(launch.show_state, SW_SHOWMAXIMIZED);
//
// It opens a window of class QuonTestTarget whose title is its arguments, and ends when that is closed. Each
// launch appends a line to <its own path>.record; the environment's QUON_TARGET_RECORD may name another file.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace testkit {

struct TargetLaunch {
    DWORD process_id = 0;
    /// As the program received it, its own name included.
    std::string command_line;
    std::string work_folder;
    /// SW_...; -1 when the starter asked for none.
    int show_state = -1;
};

/// All launches so far of the copy at this path, in order.
std::vector<TargetLaunch> TargetLaunches(const std::string& target_path);
/// The same from a record file.
std::vector<TargetLaunch> LaunchesFromRecord(const std::string& record_path);
/// Waits until there are at least `count`.
std::vector<TargetLaunch> WaitForTargetLaunches(const std::string& target_path, std::size_t count);

}  // namespace testkit
