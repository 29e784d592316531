// A program that a test has started, or one that the program under test has started.
//
//     ProgramFolder folder;
//     RunningProgram quon = StartQuon(folder);                // a copy of Quon.exe in the folder
//     const Window panel = quon.WaitForWindow({.class_name = "QuonMain"});
//     ...
//     RunningProgram child = WaitForProcess({.name = "quon_test_target.exe", .parent_id = quon.Id()});
//     EXPECT_TRUE(child.MainWindow().IsMaximized());
//     EXPECT_EQ(quon.CloseAndWait(), 0u);
//
// The destructor ends the program: gently, by asking its windows to close, and if that does not help by its
// handle. Everything that a started program has started itself ends with it, and all of it ends should the
// test program crash. Nothing is ever looked up by name in order to be ended.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/program_folder.h"
#include "tests/support/window.h"

namespace testkit {

struct CloseHandleOf {
    void operator()(void* handle) const { CloseHandle(handle); }
};
using OwnedHandle = std::unique_ptr<void, CloseHandleOf>;

struct StartOptions {
    /// What follows the program's name on the command line.
    std::string arguments = {};
    /// Empty: the program's own folder.
    std::string work_folder = {};
    /// The show state that the starter asks for; -1: none is asked for.
    int show_state = -1;
    /// Environment variables beside those of the test program.
    std::vector<std::pair<std::string, std::string>> environment = {};
};

class RunningProgram {
  public:
    /// Starts a program by its full path.
    explicit RunningProgram(const std::string& path, const StartOptions& options = {});
    /// Takes charge of a process that runs already.
    static RunningProgram Attach(DWORD process_id);
    ~RunningProgram();
    RunningProgram(RunningProgram&&) noexcept = default;
    RunningProgram& operator=(RunningProgram&&) = delete;

    DWORD Id() const { return id_; }
    HANDLE Handle() const { return process_.get(); }
    bool IsRunning() const { return !ExitCode().has_value(); }
    /// Nothing while it runs.
    std::optional<DWORD> ExitCode() const;
    /// Waits until it has ended by itself; returns the exit code.
    DWORD WaitForExit() const;
    /// Asks it to close, waits until it has ended and returns the exit code. Throws when it stays.
    DWORD CloseAndWait();
    /// Ends it at once, as the Task Manager would.
    void Terminate();

    /// Visible top-level windows of this process, frontmost first; the query's process is filled in.
    std::vector<Window> Windows(WindowQuery query = {}) const;
    Window FindWindow(WindowQuery query = {}) const;
    Window WaitForWindow(WindowQuery query = {}) const;
    /// Waits for its first visible window that nobody owns.
    Window MainWindow() const;
    /// Waits until it answers and has no input, posted message or painting before it: what was asked of it
    /// has happened. It must have a visible window.
    void WaitUntilIdle() const;

    /// Bytes of memory it occupies now.
    std::size_t WorkingSet() const;
    /// Drawing objects (bitmaps, fonts, brushes, device contexts) that it holds.
    std::size_t GdiObjectCount() const;
    /// Windows, menus, icons and cursors that it holds. It must own a window that answers messages.
    std::size_t UserObjectCount() const;

  private:
    RunningProgram(DWORD id, OwnedHandle process) : id_(id), process_(std::move(process)) {}
    /// Waits until it has begun to wait for input. A window can be seen before its program answers input.
    void WaitUntilStarted() const;
    std::vector<Window> WindowsToClose() const;
    bool CloseGently();

    DWORD id_ = 0;
    OwnedHandle process_;
    /// Ends what is left of the program's descendants when the last handle to it goes.
    OwnedHandle job_;
};

/// Starts the built Quon.exe from a copy in the folder, as an installed Quon runs: its Quon.ini is there.
/// The mouse pointer goes out of the way first: a panel that opens below it would be hovered over.
RunningProgram StartQuon(const ProgramFolder& folder, const StartOptions& options = {});
/// Runs a program that is to end by itself, like a second Quon; returns its exit code.
DWORD RunToExit(const std::string& path, const StartOptions& options = {});

struct ProcessInfo {
    DWORD id = 0;
    DWORD parent_id = 0;
    std::string name;
};
struct ProcessQuery {
    /// The executable's name without a folder; case does not count.
    std::string name = {};
    /// 0: whichever.
    DWORD parent_id = 0;
};
std::vector<ProcessInfo> FindProcesses(const ProcessQuery& query);
/// Waits for one such process and takes charge of it.
RunningProgram WaitForProcess(const ProcessQuery& query);

}  // namespace testkit
