#include "model/launching.h"

#include "tests/support/unit_test.h"

namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::CallLog, testkit::RecordedCall;

/// Opens nothing: what goes to the shell, to the process start and to the clock is logged.
class LaunchTargetTest : public testing::Test {
  protected:
    /// The line of a call to the shell; `null` and "" are different things to it.
    static std::string Opened(const std::string& verb, const std::string& file, const std::string& parameters,
                              const std::string& folder, int show) {
        return "ShellExecuteA verb=" + verb + " file=" + file + " parameters=" + parameters +
               " folder=" + folder + " show=" + std::to_string(show);
    }
    /// The line of an item that is opened by the rule of its extension.
    static std::string OpenedItem(const std::string& verb, const std::string& file, const std::string& folder,
                                  int show = 1) {
        return Opened(verb, file, "", folder, show);
    }
    static std::string OpenedUrl(const std::string& target) { return Opened("null", target, "null", "", 1); }

    std::string Launch(const std::string& target, bool isGroup = false, int showCommand = 1,
                       const std::string& commandSwitch = "") {
        std::string passed = target;
        return model::LaunchTarget(passed, isGroup, showCommand, commandSwitch);
    }

    CallLog log_;
    /// What the shell answers for a file; 33 for all others.
    std::map<std::string, INT_PTR> answers_;

  private:
    static std::string Text(LPCSTR text) { return text == nullptr ? "null" : text; }

    RecordedCall shell_ =
        FAKE_CALL(ShellExecuteA,
                  [this](HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR folder,
                         INT show) -> HINSTANCE {
                      EXPECT_EQ(owner, GetDesktopWindow());
                      log_.Add(Opened(Text(verb), Text(file), Text(parameters), Text(folder), show));
                      const auto answer = answers_.find(file);
                      return reinterpret_cast<HINSTANCE>(answer == answers_.end() ? 33 : answer->second);
                  });
    RecordedCall start_ = FAKE_CALL(
        CreateProcessA,
        [this](LPCSTR program, LPSTR line, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD, LPVOID,
               LPCSTR folder, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION) -> BOOL {
            log_.Add("CreateProcessA", program, line, folder, startup->dwFlags & STARTF_USESHOWWINDOW,
                     startup->wShowWindow);
            return FALSE;
        });
    RecordedCall sleep_ = FAKE_CALL(Sleep, [this](DWORD time) { log_.Add("Sleep", time); });
};

TEST_F(LaunchTargetTest, OpensADocumentInItsFolderAndWaitsHalfASecond) {
    EXPECT_EQ(Launch("C:\\Łódź\\файл 文件.txt"), "OK");
    EXPECT_THAT(log_.Lines(),
                ElementsAre(OpenedItem("Open", "C:\\Łódź\\файл 文件.txt", "C:\\Łódź"), "Sleep 500"));
}

TEST_F(LaunchTargetTest, TurnsAStateOfZeroIntoNormalInTheCallersVariableToo) {
    std::string target = "C:\\a.txt";
    int show = 0;
    model::LaunchTarget(target, false, show, "");
    EXPECT_EQ(show, 1);
    EXPECT_EQ(target, "C:\\a.txt");
    EXPECT_EQ(log_.Lines().front(), OpenedItem("Open", "C:\\a.txt", "C:", 1));
}

TEST_F(LaunchTargetTest, PassesAnyOtherStateOn) {
    for (int show : {1, 3, 6, 7}) {
        log_.Clear();
        std::string target = "C:\\a.txt";
        const int asked = show;
        model::LaunchTarget(target, false, show, "");
        EXPECT_EQ(show, asked);
        EXPECT_EQ(log_.Lines().front(), OpenedItem("Open", "C:\\a.txt", "C:", asked));
    }
}

TEST_F(LaunchTargetTest, GivesProgramsAndLinksAnEmptyVerbByTheirLowerCaseEnding) {
    for (const std::string file : {"run.exe", "run.bat", "run.com", "run.lnk", "run.xexe", "wwwdotcom"}) {
        log_.Clear();
        Launch("C:\\T\\" + file);
        EXPECT_THAT(log_.Lines(), ElementsAre(OpenedItem("", "C:\\T\\" + file, "C:\\T"), "Sleep 500"));
    }
    for (const std::string file :
         {"run.BAT", "run.Exe", "run.COM", "run.LNK", "run.exe ", "run.txt", "xe", ""}) {
        log_.Clear();
        Launch("C:\\T\\" + file);
        EXPECT_THAT(log_.Lines(), ElementsAre(OpenedItem("Open", "C:\\T\\" + file, "C:\\T"), "Sleep 500"));
    }
}

TEST_F(LaunchTargetTest, OpensAGroupInOrderAndWaitsOnce) {
    EXPECT_EQ(Launch("C:\\D\\a.txt|C:\\T\\b.exe", true, 3), "OK");
    EXPECT_THAT(log_.Lines(), ElementsAre(OpenedItem("Open", "C:\\D\\a.txt", "C:\\D", 3),
                                          OpenedItem("", "C:\\T\\b.exe", "C:\\T", 3), "Sleep 500"));
}

TEST_F(LaunchTargetTest, DoesNotSplitASingleTarget) {
    Launch("C:\\D\\a.txt|C:\\T\\b.exe", false);
    EXPECT_THAT(log_.Lines(),
                ElementsAre(OpenedItem("", "C:\\D\\a.txt|C:\\T\\b.exe", "C:\\D\\a.txt|C:\\T"), "Sleep 500"));
}

TEST_F(LaunchTargetTest, KeepsTheEmptyPiecesOfAGroup) {
    Launch("|C:\\D\\a.txt|", true);
    EXPECT_THAT(log_.Lines(),
                ElementsAre(OpenedItem("Open", "", ""), OpenedItem("Open", "C:\\D\\a.txt", "C:\\D"),
                            OpenedItem("Open", "", "C:\\D"), "Sleep 500"));
}

TEST_F(LaunchTargetTest, PassesAUrlToTheShellTwice) {
    EXPECT_EQ(Launch("http://example.org/a.html", false, 3), "OK");
    EXPECT_THAT(log_.Lines(),
                ElementsAre(OpenedUrl("http://example.org/a.html"),
                            OpenedItem("Open", "http://example.org/a.html", "", 3), "Sleep 500"));
    log_.Clear();
    Launch("http://example.com");
    EXPECT_THAT(log_.Lines(), ElementsAre(OpenedUrl("http://example.com"),
                                          OpenedItem("", "http://example.com", ""), "Sleep 500"));
}

TEST_F(LaunchTargetTest, PassesTheWholeGroupWhereAMemberIsAUrl) {
    Launch("C:\\D\\a.txt|http://example.org/", true);
    EXPECT_THAT(log_.Lines(), ElementsAre(OpenedItem("Open", "C:\\D\\a.txt", "C:\\D"),
                                          OpenedUrl("C:\\D\\a.txt|http://example.org/"),
                                          OpenedItem("Open", "http://example.org/", "C:\\D"), "Sleep 500"));
}

TEST_F(LaunchTargetTest, OpensAnItemWithoutAFolderInThatOfTheItemBefore) {
    Launch("a.txt|C:\\D\\b.txt|c.txt|\\d.txt|e.txt", true);
    EXPECT_THAT(log_.Lines(),
                ElementsAre(OpenedItem("Open", "a.txt", ""), OpenedItem("Open", "C:\\D\\b.txt", "C:\\D"),
                            OpenedItem("Open", "c.txt", "C:\\D"), OpenedItem("Open", "\\d.txt", ""),
                            OpenedItem("Open", "e.txt", ""), "Sleep 500"));
    log_.Clear();
    Launch("f.txt");
    EXPECT_EQ(log_.Lines().front(), OpenedItem("Open", "f.txt", "")) << "a folder was kept between calls";
}

TEST_F(LaunchTargetTest, AnswersOkWhenTheLastCallSucceeded) {
    const struct {
        INT_PTR first;
        INT_PTR last;
        bool succeeds;
    } cases[] = {{33, 33, true},  {2, 33, true},  {2, 42, true},
                 {33, 32, false}, {33, 0, false}, {33, 2, false}};
    for (const auto& [first, last, succeeds] : cases) {
        answers_ = {{"C:\\a.txt", first}, {"C:\\b.txt", last}};
        const std::string result = Launch("C:\\a.txt|C:\\b.txt", true);
        EXPECT_EQ(result == "OK", succeeds) << first << " then " << last;
    }
    EXPECT_EQ(log_.Count("Sleep 500"), std::size(cases));
}

TEST_F(LaunchTargetTest, StartsATargetWithASwitchAsACommandLine) {
    std::string target = "C:\\My Tools\\a.exe";
    int show = 3;
    EXPECT_EQ(model::LaunchTarget(target, false, show, "/x \"żółw\""), "");
    EXPECT_EQ(target, "C:\\My Tools\\a.exe /x \"żółw\"");
    EXPECT_EQ(show, 3);
    EXPECT_THAT(log_.Lines(),
                ElementsAre("CreateProcessA (null) C:\\My Tools\\a.exe /x \"żółw\" (null) 1 1", "Sleep 500"));
}

TEST_F(LaunchTargetTest, StartsAGroupWithASwitchAsOneCommandLine) {
    std::string target = "C:\\a.exe|http://example.org/";
    int show = 0;
    EXPECT_EQ(model::LaunchTarget(target, true, show, "/x"), "");
    EXPECT_EQ(show, 1);
    EXPECT_THAT(log_.Lines(), ElementsAre("CreateProcessA (null) C:\\a.exe|http://example.org/ /x (null) 1 1",
                                          "Sleep 500"));
}

/// Answers in place of the shell's table of file types.
class FindAssociatedExeTest : public testing::Test {
  protected:
    FindAssociatedExeTest() { model::DefaultBrowserPath = "C:\\browser.exe"; }
    ~FindAssociatedExeTest() override { model::DefaultBrowserPath.clear(); }

    void Answer(const std::string& program, INT_PTR result) {
        find_ = FAKE_CALL(FindExecutableA, [this, program, result](LPCSTR file, LPCSTR folder, LPSTR buffer) {
            log_.Add(file, folder);
            EXPECT_EQ(std::string(buffer, 260), std::string(260, ' '));
            if (!program.empty()) memcpy(buffer, program.c_str(), program.size() + 1);
            return reinterpret_cast<HINSTANCE>(result);
        });
    }

    CallLog log_;

  private:
    RecordedCall find_;
};

TEST_F(FindAssociatedExeTest, GivesTheProgramUpToItsNul) {
    Answer("C:\\Łódź\\редактор 编.exe", 33);
    EXPECT_EQ(model::FindAssociatedExe("C:\\D\\файл.txt"), "C:\\Łódź\\редактор 编.exe");
    EXPECT_THAT(log_.Lines(), ElementsAre("C:\\D\\файл.txt (null)"));
}

TEST_F(FindAssociatedExeTest, HasRoomForALongPathWithSeveralBytesPerCharacter) {
    std::string program = "C:\\";
    for (int index = 0; index < 255; ++index)
        program += "文";
    Answer(program, 33);
    EXPECT_EQ(model::FindAssociatedExe("C:\\a.txt"), program);
}

TEST_F(FindAssociatedExeTest, ReadsTheAnswerAsASignedNumberOf16Bits) {
    const std::pair<INT_PTR, bool> answers[] = {
        {0, false},      {2, false},      {31, false},      {32, false},      {33, true},     {0x7FFF, true},
        {0x8000, false}, {0xFFFF, false}, {0x10000, false}, {0x10020, false}, {0x10021, true}};
    for (const auto& [answer, found] : answers) {
        Answer("C:\\a.exe", answer);
        EXPECT_EQ(model::FindAssociatedExe("C:\\a.txt"), found ? "C:\\a.exe" : "") << answer;
    }
}

TEST_F(FindAssociatedExeTest, FallsBackToTheBrowserForAUrlAlone) {
    Answer("", 31);
    EXPECT_EQ(model::FindAssociatedExe("http://example.org/"), "C:\\browser.exe");
    EXPECT_EQ(model::FindAssociatedExe("C:\\a.txt"), "");
    EXPECT_EQ(model::FindAssociatedExe("example.org"), "");
    EXPECT_EQ(model::FindAssociatedExe(""), "");
}

TEST_F(FindAssociatedExeTest, PrefersTheProgramOfAUrl) {
    Answer("C:\\mail.exe", 33);
    EXPECT_EQ(model::FindAssociatedExe("mailto:a@example.org"), "C:\\mail.exe");
}

class FindDefaultBrowserTest : public FindAssociatedExeTest {};

TEST_F(FindDefaultBrowserTest, AsksForTheProgramOfAProbeFileThatIsThereMeanwhile) {
    const std::string probe = testkit::TestProgramFolder() + "\\temphtm.HTM";
    std::vector<std::string> contents;
    const RecordedCall find = FAKE_CALL(FindExecutableA, [&](LPCSTR file, LPCSTR, LPSTR buffer) {
        EXPECT_EQ(file, probe);
        contents.push_back(testkit::FileBytes(file));
        strcpy(buffer, "C:\\new browser.exe");
        return reinterpret_cast<HINSTANCE>(33);
    });
    model::FindDefaultBrowser();
    EXPECT_THAT(contents, ElementsAre("\"<HTML> <\\HTML>\"\r\n"));
    EXPECT_EQ(model::DefaultBrowserPath, "C:\\new browser.exe");
    EXPECT_FALSE(testkit::FileExists(probe));
}

TEST_F(FindDefaultBrowserTest, FindsNoneWithoutAnAssociation) {
    Answer("", 31);
    model::FindDefaultBrowser();
    EXPECT_THAT(model::DefaultBrowserPath, IsEmpty());
    EXPECT_FALSE(testkit::FileExists(testkit::TestProgramFolder() + "\\temphtm.HTM"));
}

TEST_F(FindDefaultBrowserTest, AsksEvenWhenTheProbeFileCannotBeMade) {
    Answer("C:\\browser 2.exe", 33);
    CallLog log;
    const RecordedCall create = STUB_CALL(log, CreateFileA, INVALID_HANDLE_VALUE);
    model::FindDefaultBrowser();
    EXPECT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(model::DefaultBrowserPath, "C:\\browser 2.exe");
}

}  // namespace
