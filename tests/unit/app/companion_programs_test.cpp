// The other programs of the program folder in the predefined menu.

#include "tests/support/program_calls.h"
#include "tests/unit/app/panel_menus_fixture.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty, ::testing::UnorderedElementsAre;

class CompanionProgramsTest : public PanelMenusFixture {
  protected:
    /// Adds them and gives their captions.
    std::vector<std::string> Added() {
        menus_.AddCompanionPrograms();
        std::vector<std::string> added = Captions(menus_.mnuPreDef);
        added.erase(added.begin(), added.begin() + 6);
        return added;
    }
};

TEST_F(CompanionProgramsTest, AppendTheOtherProgramsOfTheProgramFolder) {
    for (const char* name : {"Quon.exe", "QSU.exe", "Алат 文.exe", "notes.txt"})
        folder_.MakeFile(name, "x");
    folder_.MakeFile("plain.exe", "x");
    // Not every file system can take the archive attribute off a file.
    const auto takeOff = [](LPWIN32_FIND_DATAA found) {
        if (std::string_view(found->cFileName) == "plain.exe")
            found->dwFileAttributes = FILE_ATTRIBUTE_NORMAL;
    };
    const auto first = FAKE_CALL(FindFirstFileA, [&](LPCSTR pattern, LPWIN32_FIND_DATAA found) {
        const HANDLE listing = ORIGINAL_CALL(FindFirstFileA)(pattern, found);
        takeOff(found);
        return listing;
    });
    const auto next = FAKE_CALL(FindNextFileA, [&](HANDLE listing, LPWIN32_FIND_DATAA found) {
        const BOOL more = ORIGINAL_CALL(FindNextFileA)(listing, found);
        takeOff(found);
        return more;
    });
    const std::vector<std::string> added = Added();
    EXPECT_THAT(added, UnorderedElementsAre("QSU", "Алат 文"));
    const int index = added[0] == "QSU" ? 6 : 7;
    EXPECT_EQ(menus_.mnuPreDef[index].tag, folder_.FullPath("QSU.exe"));
    Choose(1, 2000 + index);
    EXPECT_THAT(
        log_.Lines(),
        ElementsAre("open  " + folder_.FullPath("QSU.exe") + "  " + folder_.Path() + " 1", "Sleep 500"));
}

TEST_F(CompanionProgramsTest, AppendNothingThatIsFoundByItsShortNameOnly) {
    for (const char* name : {"a.exe", "B.EXE", "c.exe-old", "d.exeold", "e.exe.bak"})
        folder_.MakeFile(name, "x");
    // A file system with short names finds "C~1.EXE" as well.
    const auto first = FAKE_CALL(FindFirstFileA, [&](LPCSTR, LPWIN32_FIND_DATAA found) {
        return ORIGINAL_CALL(FindFirstFileA)(folder_.FullPath("*.exe*").c_str(), found);
    });
    EXPECT_THAT(Added(), UnorderedElementsAre("a", "B"));
}

TEST_F(CompanionProgramsTest, TreatAnotherSpellingOfTheProgramsNameAsAnotherProgram) {
    folder_.MakeFile("QUON.EXE", "x");
    menus_.AddCompanionPrograms();
    EXPECT_EQ(menus_.mnuPreDef.Count(), 7);
}

TEST_F(CompanionProgramsTest, AppendNothingWithoutOtherPrograms) {
    folder_.MakeFile("Quon.exe", "x");
    EXPECT_THAT(Added(), IsEmpty());
}

TEST_F(CompanionProgramsTest, HideThePanelAfterAnotherProgramToo) {
    folder_.MakeFile("QSU.exe", "x");
    menus_.AddCompanionPrograms();
    config::Settings.HideAfterLaunch = true;
    Choose(1, 2006);
    EXPECT_TRUE(dock_.Hidden());
    EXPECT_THAT(log_.Lines(), ElementsAre(::testing::StartsWith("open  " + folder_.FullPath("QSU.exe")),
                                          "Sleep 500", "Sleep 200"));
}

TEST_F(CompanionProgramsTest, RunEachOfAThousandOtherProgramsAndTheOtherMenusBesideThem) {
    for (int number = 0; number < 1000; ++number)
        folder_.MakeFile("p" + std::to_string(number) + ".exe");
    menus_.AddCompanionPrograms();
    ASSERT_EQ(menus_.mnuPreDef.Count(), 1006);
    std::vector<std::string> listed;
    WIN32_FIND_DATAA found{};
    const HANDLE listing = FindFirstFileA(folder_.FullPath("*.exe").c_str(), &found);
    do
        listed.push_back(folder_.FullPath(found.cFileName));
    while (FindNextFileA(listing, &found) != 0);
    FindClose(listing);
    ASSERT_EQ(listed.size(), 1000u);
    // Nothing else opens along the way, such as About.
    const testkit::ModalAnswers none({});
    // Among them are the numbers of the other menus' elements.
    for (const int index : {6, 199, 200, 201, 400, 401, 403, 405, 500, 600, 700, 1005}) {
        Choose(1, 2000 + index);
        const std::string& path = listed.at(static_cast<size_t>(index) - 6);
        EXPECT_THAT(log_.Lines(), ElementsAre("open  " + path + "  " + folder_.Path() + " 1", "Sleep 500"));
    }
    EXPECT_FALSE(config::Settings.ExtensiveTooltips);
    Choose(0, 2201);
    EXPECT_THAT(log_.Lines(), ElementsAre("open explore C:\\ (null) " + Root() + " 1"));
    Choose(2, 2403);
    EXPECT_TRUE(config::Settings.ExtensiveTooltips);
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(CompanionProgramsTest, PassOverAFolderThatIsNamedLikeAProgram) {
    folder_.MakeFolder("folder.exe");
    const auto first = FAKE_CALL(FindFirstFileA, [&](LPCSTR pattern, LPWIN32_FIND_DATAA found) {
        const HANDLE listing = ORIGINAL_CALL(FindFirstFileA)(pattern, found);
        found->dwFileAttributes |= FILE_ATTRIBUTE_ARCHIVE;
        return listing;
    });
    EXPECT_THAT(Added(), IsEmpty());
}

TEST_F(CompanionProgramsTest, LeaveOutTheUninstallerThatLiesInAFolderOfItsOwn) {
    for (const char* name : {"Quon.exe", "QSU.exe", "Uninstall\\Uninstall.exe"})
        folder_.MakeFile(name, "x");
    EXPECT_THAT(Added(), ElementsAre("QSU"));
}

TEST_F(CompanionProgramsTest, NameAProgramInFullWhereItsBareNameWouldBeNoCaption) {
    for (const char* name : {"-.exe", ".exe"})
        folder_.MakeFile(name, "x");
    EXPECT_THAT(Added(), UnorderedElementsAre("-.exe", ".exe"));
}

TEST_F(CompanionProgramsTest, WorkInAFolderOnANetworkShare) {
    folder_.MakeFile("QSU.exe", "x");
    const auto program = testkit::ProgramLiesAt("\\\\сервер\\share\\Quon\\Quon.exe");
    const auto first = FAKE_CALL(FindFirstFileA, [this](LPCSTR pattern, LPWIN32_FIND_DATAA found) {
        EXPECT_STREQ(pattern, "\\\\сервер\\share\\Quon\\*.exe");
        return ORIGINAL_CALL(FindFirstFileA)(folder_.FullPath("*.exe").c_str(), found);
    });
    menus_.AddCompanionPrograms();
    Choose(1, 2006);
    EXPECT_EQ(log_.Lines().front(), "open  \\\\сервер\\share\\Quon\\QSU.exe  \\\\сервер\\share\\Quon 1");
    Choose(1, 2002);
    EXPECT_THAT(log_.Lines().front(), ::testing::EndsWith(" (null) \\\\с 1"));
    Choose(0, 2201);
    EXPECT_THAT(log_.Lines(), ElementsAre("open explore C:\\ (null) \\\\с 1"));
}

}  // namespace
}  // namespace app
