// The program where something around it fails: many starts at once, a file that cannot be written, a foreign
// window that hangs.

#include "tests/program/quon_test.h"
#include "tests/support/neighbour.h"

namespace testkit {
namespace {

using ::testing::Contains, ::testing::HasSubstr, ::testing::Not, ::testing::SizeIs;

/// A process that does not run yet.
class SuspendedProgram {
  public:
    explicit SuspendedProgram(const std::string& path) {
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(Wide(path).c_str(), nullptr, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                            nullptr, &startup, &process))
            ThrowWindowsError("CreateProcessW");
        process_.reset(process.hProcess);
        thread_.reset(process.hThread);
        id_ = process.dwProcessId;
    }
    void Resume() const { ResumeThread(thread_.get()); }
    DWORD Id() const { return id_; }

  private:
    OwnedHandle process_;
    OwnedHandle thread_;
    DWORD id_ = 0;
};

class FaultsTest : public QuonTest {
  protected:
    /// Renames the first button in vain: what was typed stays in the box until the user gives up.
    static void Rename(QuonPanel& quon) {
        mouse::MoveTo(quon.Button(1).Centre());
        WaitFor("the hover picture", [&] { return quon.HoverPicture().IsVisible(); });
        keyboard::Press(VK_F2);
        WaitFor("the rename box", [&] { return quon.RenameBox().IsVisible(); });
        keyboard::Type("new\n");
        quon.Settle();
        EXPECT_TRUE(quon.RenameBox().IsVisible());
        keyboard::Press(VK_ESCAPE);
        WaitFor("the rename box closes", [&] { return !quon.RenameBox().IsVisible(); });
        quon.Settle();
    }
    /// Starts, renames, defines a tab and ends while nothing can be written.
    void ExpectNothingHappensTo(const std::string& text) {
        {
            QuonPanel quon(folder_);
            quon.ExpectName(1, "Program");
            Rename(quon);
            mouse::RightClick(quon.Header(2));
            const Window dialog = quon.Program().WaitForWindow({.title = "Define tab"});
            keyboard::Press(VK_RETURN);
            quon.Program().WaitUntilIdle();
            EXPECT_TRUE(dialog.Exists());
            keyboard::Press(VK_ESCAPE);
            WaitUntilClosed(dialog);
            EXPECT_THAT(quon.Program().Windows(), SizeIs(1)) << "a message";
            EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
        }
        EXPECT_EQ(folder_.IniBytes(), text);
        EXPECT_FALSE(HasSideFile(folder_));
    }
    std::string FilledIni() const {
        const QuonIni ini = QuonIni{}
                                .AddShortcut("11", "Program", QuonExe(), "/x")
                                .AddShortcut("12", "Page", "http://example.test/?a=b");
        return ini.Text();
    }
};

TEST_F(FaultsTest, OneOfTwentySimultaneousStartsIsLeft) {
    constexpr int kStarts = 20;
    folder_.WriteIniText(FilledIni());
    const std::string path = folder_.CopyIn(QuonExe());
    std::vector<SuspendedProgram> starts;
    std::vector<RunningProgram> programs;
    for (int start = 0; start < kStarts; ++start) {
        starts.emplace_back(path);
        programs.push_back(RunningProgram::Attach(starts.back().Id()));
    }
    for (const SuspendedProgram& start : starts)
        start.Resume();
    const auto running = [&] {
        return std::count_if(programs.begin(), programs.end(),
                             [](const RunningProgram& program) { return program.IsRunning(); });
    };
    WaitFor("all but one end", [&] { return running() <= 1; });
    const Window panel = WaitForTopWindow({.class_name = "QuonMain"});
    EXPECT_THAT(FindTopWindows({.class_name = "QuonMain", .visible_only = false}), SizeIs(1));
    ASSERT_EQ(running(), 1);
    for (RunningProgram& program : programs) {
        if (program.Id() != panel.ProcessId()) {
            EXPECT_EQ(program.ExitCode(), 0u);
            continue;
        }
        program.WaitUntilIdle();
        EXPECT_EQ(panel.Child(IDC_BUTTON + 1).Text(), "Program");
        EXPECT_EQ(program.CloseAndWait(), 0u);
    }
    EXPECT_EQ(folder_.IniValue("Cuts", "Page"), "http://example.test/?a=b");
}

TEST_F(FaultsTest, AReadOnlyFileStaysAsItIs) {
    const std::string text = FilledIni();
    folder_.WriteIniText(text);
    folder_.SetReadOnly("Quon.ini");
    const OwnedHandle probe(CreateFileW(Wide(folder_.IniPath()).c_str(), GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                        nullptr));
    if (probe.get() != INVALID_HANDLE_VALUE)
        GTEST_SKIP() << "this user may write to read-only files: nothing would be shown";
    ExpectNothingHappensTo(text);
}

TEST_F(FaultsTest, AFileThatAnotherProgramHoldsStaysAsItIs) {
    const std::string text = FilledIni();
    folder_.WriteIniText(text);
    const OwnedHandle held(CreateFileW(Wide(folder_.IniPath()).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                       nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(held.get(), INVALID_HANDLE_VALUE);
    ExpectNothingHappensTo(text);
}

TEST_F(FaultsTest, AWindowThatHangsHoldsUpNeitherTheMenuNorThePanel) {
    const Neighbour neighbour(folder_, "hung.exe", "hung");
    QuonPanel quon = Start({.taskbar_processes_only = false,
                            .edge = static_cast<int>(Edge::kTop),
                            .pop_on_hover = true,
                            .click_shows = true});
    neighbour.Hang();
    const PopupMenu menu = quon.OpenButtonMenu(1);
    EXPECT_THAT(menu.Captions(), Contains("Free button"));
    if (menu.Item("Assign from active").enabled) {
        EXPECT_THAT(menu.Open("Assign from active").Captions(), Not(Contains(HasSubstr("hung"))));
    }
    keyboard::Press(VK_ESCAPE);
    keyboard::Press(VK_ESCAPE);
    WaitFor("the menus close", [&] { return PopupMenu::OpenCount(quon.Id()) == 0; });
    // The pointer rests on the window that hangs, and the panel asks what it rests on.
    quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
    quon.WaitUntilDockedAt(Edge::kTop);
    mouse::MoveTo(neighbour.MainWindow().Centre());
    EXPECT_EQ(quon.Main().Send(WM_NULL), 0);
    mouse::Click(POINT{512, 1});
    quon.WaitUntilOut();
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
}

}  // namespace
}  // namespace testkit
