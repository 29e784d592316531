#include "model/shortcut_store.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "config/ini.h"
#include "tests/support/held_file.h"
#include "tests/support/program_folder.h"
#include "tests/support/recorded_call.h"
#include "tests/support/scoped_ini_path.h"

namespace model {
namespace {

using ::testing::ElementsAre;
using Entry = testkit::IniText::Entry;
using Renaming = ShortcutStore::Renaming;
using Records = Renaming::Records;

constexpr const char* kIni =
    "[Buttons]\r\n11=Notes|3\r\n12=notes|07|x\r\n23=Other|1\r\n20=Notes|tab\r\n"
    "[Cuts]\r\nNotes=C:\\a=b.txt\r\nOther=C:\\o|C:\\p\r\n"
    "[Switch]\r\nNotes=/n\r\nOther=/o\r\nEmpty=/e\r\n";

class ShortcutStoreTest : public ::testing::Test {
  protected:
    ShortcutStoreTest() { Load(kIni); }

    void Load(const std::string& ini) {
        folder_.WriteIniText(ini);
        records_.LoadButtonRecords();
    }
    std::vector<Entry> Section(const char* name) const { return folder_.Ini().Entries(name); }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    ButtonRecords records_;
    ShortcutStore store_{records_};
};

TEST_F(ShortcutStoreTest, LooksUpWhatIsStored) {
    EXPECT_EQ(ShortcutStore::Target("NOTES"), "C:\\a=b.txt");
    EXPECT_EQ(ShortcutStore::Target("nobody"), "");
    EXPECT_EQ(ShortcutStore::Switch("Other"), "/o");
    EXPECT_EQ(ShortcutStore::Switch("nobody"), "");
    const auto all = ShortcutStore::Shortcuts();
    ASSERT_TRUE(all);
    ASSERT_EQ(all->size(), 2u);
    EXPECT_EQ(all->at(1).name, "Other");
    EXPECT_EQ(all->at(1).target, "C:\\o|C:\\p");
}

TEST_F(ShortcutStoreTest, SaysThatNothingCouldBeReadInsteadOfThatNothingIsThere) {
    const testkit::HeldFile held(folder_.IniPath());
    EXPECT_EQ(ShortcutStore::Target("Notes"), std::nullopt);
    EXPECT_EQ(ShortcutStore::Switch("Notes"), std::nullopt);
    EXPECT_EQ(ShortcutStore::Entries(), std::nullopt);
    EXPECT_FALSE(ShortcutStore::Shortcuts());
    EXPECT_FALSE(FindButtonKey("Notes"));
    EXPECT_FALSE(ButtonsNamed("Notes"));
    EXPECT_EQ(ShortcutStore::WholeTarget("Notes", std::string(554, 'x')), std::nullopt);
}

TEST_F(ShortcutStoreTest, TheWholeTargetIsTheStoredOneOnlyWhereItWasReadCutShort) {
    const std::string whole = "C:\\" + std::string(600, 'x') + ".txt";
    Load("[Cuts]\r\nLong=" + whole + "\r\nPlain=C:\\a=b.txt\r\n");
    EXPECT_EQ(ShortcutStore::WholeTarget("LONG", config::ReadIni("Cuts", "Long")), whole);
    EXPECT_EQ(ShortcutStore::WholeTarget("Long", "D:\\moved.txt"), "D:\\moved.txt");
    EXPECT_EQ(ShortcutStore::WholeTarget("Plain", "C:\\a"), "C:\\a");
    const std::string other = std::string(554, 'y');
    EXPECT_EQ(ShortcutStore::WholeTarget("Long", other), other) << "a button knows better than the section";
}

TEST_F(ShortcutStoreTest, KeepsTheQuotesOfATargetThatAreNotOnlyAroundIt) {
    for (const std::string target :
         {R"("C:\a b.exe" "C:\c d.txt")", R"("C:\a b.exe"|"C:\c d.txt")", R"('a' 'b')", R"("a" b)"}) {
        EXPECT_TRUE(store_.Put("Q", target));
        EXPECT_EQ(ShortcutStore::Target("Q"), target);
        const auto all = ShortcutStore::Shortcuts();
        ASSERT_TRUE(all);
        EXPECT_EQ(all->back().target, target);
        EXPECT_TRUE(store_.Rename({.former = "Q", .name = "R", .target = target}));
        EXPECT_EQ(ShortcutStore::Target("R"), target);
        EXPECT_TRUE(store_.Remove("R", std::nullopt));
    }
    EXPECT_TRUE(store_.Put("Q", R"("C:\a b.exe")"));
    EXPECT_EQ(ShortcutStore::Target("Q"), R"(C:\a b.exe)") << "the path of one file needs none";
}

TEST_F(ShortcutStoreTest, AssignsAShortcutToAButtonAndFreesTheOneItComesFrom) {
    EXPECT_TRUE(store_.Assign({{6, 9}, "New", "C:\\n", "\"/x\"", ButtonPlace{1, 1}}));
    EXPECT_EQ(folder_.IniValue("Cuts", "New"), "C:\\n");
    EXPECT_EQ(folder_.IniValue("Buttons", "69"), "New|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "");
    EXPECT_EQ(folder_.IniValue("Switch", "New"), "\"\"/x\"\"") << "with the quotes that reading takes";
    EXPECT_EQ(records_.At("69"), "New|0");
    EXPECT_EQ(records_.At("11"), "");
}

TEST_F(ShortcutStoreTest, RenamesTargetSwitchAndAllButtons) {
    EXPECT_TRUE(store_.Rename({"Notes", "Ново 文", "C:\\new"}));
    EXPECT_THAT(Section("Cuts"), ElementsAre(Entry{"Other", "C:\\o|C:\\p"}, Entry{"Ново 文", "C:\\new"}));
    EXPECT_EQ(folder_.IniValue("Switch", "Ново 文"), "/n");
    EXPECT_EQ(folder_.IniValue("Switch", "Notes"), std::nullopt);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Ново 文|3");
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "Ново 文|07|x") << "names are one whatever their case";
    EXPECT_EQ(folder_.IniValue("Buttons", "20"), "Notes|tab") << "a tab is no button";
    EXPECT_EQ(records_.At("11"), "Ново 文|3");
    EXPECT_EQ(records_.At("12"), "Ново 文|07|x");
    EXPECT_EQ(records_.At("23"), "Other|1");
}

TEST_F(ShortcutStoreTest, ChangingTheFirstOfTwoRecordsOfANameKeepsTheSecond) {
    const std::string ini = "[Cuts]\r\nA=C:\\1\r\nB=C:\\b\r\na=C:\\2\r\n";
    for (const char* name : {"A", "a"}) {
        Load(ini);
        EXPECT_TRUE(store_.Rename({"A", name, "C:\\3"}));
        EXPECT_THAT(Section("Cuts"),
                    ElementsAre(Entry{"A", "C:\\3"}, Entry{"B", "C:\\b"}, Entry{"a", "C:\\2"}));
    }
    Load(ini);
    EXPECT_TRUE(store_.Rename({"A", "C", "C:\\3"}));
    EXPECT_THAT(Section("Cuts"), ElementsAre(Entry{"B", "C:\\b"}, Entry{"a", "C:\\2"}, Entry{"C", "C:\\3"}));
}

TEST_F(ShortcutStoreTest, RenamingOntoATakenNameDropsItsOldSwitch) {
    EXPECT_TRUE(store_.Rename({"Notes", "Other", "C:\\n"}));
    EXPECT_EQ(folder_.IniValue("Switch", "Other"), "/n");
    Load("[Cuts]\r\nA=C:\\a\r\nB=C:\\b\r\n[Switch]\r\nB=/b\r\nC=/c\r\n");
    EXPECT_TRUE(store_.Rename({"A", "B", "C:\\a"}));
    EXPECT_THAT(Section("Cuts"), ElementsAre(Entry{"B", "C:\\a"}));
    EXPECT_THAT(Section("Switch"), ElementsAre(Entry{"C", "/c"}));
}

TEST_F(ShortcutStoreTest, AnotherSpellingKeepsTargetAndSwitch) {
    EXPECT_TRUE(store_.Rename({"Notes", "NOTES", "C:\\a=b.txt"}));
    EXPECT_EQ(folder_.IniValue("Cuts", "NOTES"), "C:\\a=b.txt");
    EXPECT_EQ(folder_.IniValue("Switch", "NOTES"), "/n");
}

TEST_F(ShortcutStoreTest, KeepsASwitchThatIsTooLongToBeReadAtOnce) {
    const std::string commandSwitch(900, 's');
    Load("[Cuts]\r\nA=C:\\a\r\n[Switch]\r\nA=" + commandSwitch + "\r\n");
    EXPECT_TRUE(store_.Rename({"A", "B", "C:\\a"}));
    EXPECT_EQ(folder_.IniValue("Switch", "B"), commandSwitch);
}

TEST_F(ShortcutStoreTest, ARenamedGroupBeginsItsIconsAnewAndOneThatIsLeftDoesNot) {
    EXPECT_TRUE(store_.Rename({"Notes", "G", "a|b", Records::kAsGroup}));
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "G|0");
    EXPECT_TRUE(store_.Rename({"G", "G", "a|b|c", Records::kLeft}));
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "G|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "G"), "a|b|c");
    EXPECT_EQ(folder_.IniValue("Switch", "G"), "/n");
}

TEST_F(ShortcutStoreTest, AButtonThatTakesTheNameInAnyCaseGetsItWithItsIcon) {
    EXPECT_TRUE(store_.Rename({"Notes", "New", "C:\\n", Records::kAfterTarget, ButtonPlace{2, 3}, 5}));
    EXPECT_EQ(records_.At("23"), "New|5");
    EXPECT_EQ(records_.At("11"), "New|3");
}

TEST_F(ShortcutStoreTest, ALineThatIsNoButtonsRecordDoesNotStopARenaming) {
    Load("[Buttons]\r\n99=Notes|0\r\njunk\r\nx=Notes|0\r\n11=Notes|0\r\n[Cuts]\r\nNotes=C:\\a\r\n");
    EXPECT_TRUE(store_.Rename({"Notes", "New", "C:\\a"}));
    EXPECT_EQ(folder_.IniValue("Buttons", "99"), "Notes|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "x"), "Notes|0");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "New|0");
    EXPECT_EQ(records_.At("11"), "New|0");
}

TEST_F(ShortcutStoreTest, FreesNothingOfWhatCouldNotBeRead) {
    const std::string before = folder_.IniBytes();
    const auto read = FAKE_CALL(GetPrivateProfileSectionA, []() -> DWORD {
        SetLastError(ERROR_SHARING_VIOLATION);
        return 0;
    });
    EXPECT_FALSE(store_.Free({{{1, 1}, false, false, ""}}));
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(records_.At("11"), "Notes|3");
}

TEST_F(ShortcutStoreTest, AValueBehindWhatCanBeReadOfItsSectionIsNotTakenForWhole) {
    std::string cuts = "[Cuts]\r\n";
    for (int index = 0; index < 60; ++index)
        cuts += "name " + std::to_string(index) + "=" + std::string(400, 'x') + "\r\n";
    Load(cuts + "Long=" + std::string(700, 'y') + "\r\n");
    EXPECT_EQ(ShortcutStore::WholeTarget("Long", config::ReadIni("Cuts", "Long")), std::nullopt);
    EXPECT_EQ(ShortcutStore::WholeTarget("Long", "C:\\short"), "C:\\short");
}

TEST_F(ShortcutStoreTest, AQuotedValueThatIsTooLongComesWholeToo) {
    const std::string whole(700, 'y');
    Load("[Cuts]\r\nLong=\"" + whole + "\"\r\n");
    EXPECT_EQ(ShortcutStore::WholeTarget("Long", config::ReadIni("Cuts", "Long")), whole);
}

TEST_F(ShortcutStoreTest, RemovesAShortcutWithItsButtonAndItsSwitchOnlyWhereThatIsAsked) {
    EXPECT_TRUE(store_.Remove("Notes", ButtonPlace{1, 1}));
    EXPECT_EQ(folder_.IniValue("Cuts", "Notes"), std::nullopt);
    EXPECT_EQ(folder_.IniValue("Switch", "Notes"), "/n");
    EXPECT_EQ(records_.At("11"), "");
    EXPECT_TRUE(store_.RemoveWithButton({2, 3}, "Other", true));
    EXPECT_THAT(Section("Switch"), ElementsAre(Entry{"Notes", "/n"}));
    EXPECT_EQ(records_.At("23"), "");
}

TEST_F(ShortcutStoreTest, FreesButtonsAndWritesOnlyWhatIsNotFreeInTheFile) {
    Load("[Buttons]\r\n11=a|0\r\n12=\r\n[Cuts]\r\na=C:\\a\r\na|0=C:\\b\r\n");
    std::vector<std::string> written;
    const auto write =
        WATCH_CALL(WritePrivateProfileStringA, [&](LPCSTR section, LPCSTR key, LPCSTR, LPCSTR) {
            if (std::string(section) == "Buttons") written.emplace_back(key);
        });
    EXPECT_TRUE(
        store_.Free({{{1, 1}, false, false, "a|0"}, {{1, 2}, true, false, ""}, {{1, 3}, true, false, ""}}));
    EXPECT_THAT(written, ElementsAre("11", "13"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a|0"), std::nullopt);
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "C:\\a");
    EXPECT_EQ(records_.At("11"), "");
}

TEST_F(ShortcutStoreTest, FollowsAFileThatWasMoved) {
    EXPECT_TRUE(store_.Follow({{1, 1}, 3, "Notes", "D:\\b.txt", true}));
    EXPECT_EQ(records_.At("11"), "D:\\b.txt|3");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "D:\\b.txt|3");
    EXPECT_EQ(folder_.IniValue("Cuts", "D:\\b.txt"), "D:\\b.txt");
    EXPECT_EQ(folder_.IniValue("Cuts", "Notes"), "D:\\b.txt");
    EXPECT_EQ(folder_.IniValue("Switch", "D:\\b.txt"), "/n");
    EXPECT_EQ(folder_.IniValue("Switch", "Notes"), "/n") << "copied, not taken";
}

TEST_F(ShortcutStoreTest, LeadsToTheOldPlaceOfAFileThatDidNotGetThere) {
    EXPECT_TRUE(store_.Follow({{1, 1}, 3, "Notes", "D:\\b.txt", false, "C:\\a.txt"}));
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "D:\\b.txt|3");
    EXPECT_EQ(folder_.IniValue("Cuts", "D:\\b.txt"), "C:\\a.txt");
    EXPECT_EQ(folder_.IniValue("Cuts", "Notes"), "C:\\a=b.txt") << "the shortcut stays as it was";
    EXPECT_EQ(folder_.IniValue("Switch", "D:\\b.txt"), "/n");
}

TEST_F(ShortcutStoreTest, AFileThatDidNotGetThereLeavesTheShortcutOfThatPathAlone) {
    Load(
        "[Buttons]\r\n11=Notes|3\r\n[Cuts]\r\nNotes=C:\\a.txt\r\nD:\\b.txt=D:\\b.txt\r\n[Switch]\r\nNotes=/"
        "n\r\n");
    EXPECT_TRUE(store_.Follow({{1, 1}, 3, "Notes", "D:\\b.txt", false, "C:\\a.txt"}));
    EXPECT_EQ(folder_.IniValue("Cuts", "D:\\b.txt"), "D:\\b.txt");
    EXPECT_EQ(folder_.IniValue("Switch", "D:\\b.txt"), std::nullopt);
}

TEST_F(ShortcutStoreTest, LeavesTheRecordWhereThePathCanBeNoName) {
    // One that no record of a button could hold, though a shortcut can.
    for (const std::string& path : {std::string("D:\\a=b.txt"), "D:\\" + std::string(551, 'x')}) {
        Load(kIni);
        EXPECT_TRUE(store_.Follow({{1, 1}, 3, "Notes", path, true}));
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Notes|3");
        EXPECT_EQ(records_.At("11"), "Notes|3");
        EXPECT_EQ(folder_.IniValue("Cuts", "Notes"), path);
        EXPECT_EQ(Section("Cuts").size(), 2u);
        EXPECT_EQ(Section("Switch").size(), 3u);
    }
}

TEST_F(ShortcutStoreTest, FollowsNoFileToAPathThatCouldNotBeReadBackWhole) {
    // What came back would be another path, at which nothing is.
    for (const bool isThere : {true, false}) {
        EXPECT_FALSE(store_.Follow({{1, 1}, 3, "Notes", "D:\\" + std::string(552, 'x'), isThere, "C:\\n"}));
        EXPECT_EQ(folder_.IniBytes(), kIni);
        EXPECT_EQ(records_.At("11"), "Notes|3");
    }
}

/// Everything that changes something, once each.
std::vector<std::function<bool(ShortcutStore&)>> Changes() {
    return {
        [](ShortcutStore& store) { return store.Put("Notes", "C:\\x"); },
        [](ShortcutStore& store) { return store.PutSwitch("Notes", "/x"); },
        [](ShortcutStore& store) { return store.RemoveSwitch("Notes"); },
        [](ShortcutStore& store) { return store.PutRecord({1, 1}, "x|0"); },
        [](ShortcutStore& store) { return store.Assign({{1, 5}, "New", "C:\\n", "/s", ButtonPlace{1, 1}}); },
        [](ShortcutStore& store) { return store.PutShortcut({1, 1}, "C:\\x.txt", 0); },
        [](ShortcutStore& store) { return store.PutGroup({1, 1}, "a|b"); },
        [](ShortcutStore& store) { return store.Rename({"Notes", "New", "C:\\n"}); },
        [](ShortcutStore& store) { return store.Remove("Notes", ButtonPlace{1, 1}); },
        [](ShortcutStore& store) { return store.RemoveWithButton({1, 1}, "Notes", true); },
        [](ShortcutStore& store) { return store.Free({{{1, 1}, false, true, "Other"}}); },
        [](ShortcutStore& store) { return store.Follow({{1, 1}, 3, "Notes", "D:\\b", true}); }};
}

TEST_F(ShortcutStoreTest, AChangeThatCannotBeStoredChangesNothingInMemoryEither) {
    const auto changes = Changes();
    for (size_t change = 0; change < changes.size(); ++change) {
        Load(kIni);
        const std::string before = folder_.IniBytes();
        {
            const testkit::HeldFile held(folder_.IniPath());
            EXPECT_FALSE(changes[change](store_)) << change;
        }
        EXPECT_EQ(folder_.IniBytes(), before) << change;
        for (const char* key : {"11", "12", "15", "23"})
            EXPECT_EQ(records_.At(key), folder_.IniValue("Buttons", key).value_or(""))
                << change << " " << key;
    }
}

TEST_F(ShortcutStoreTest, AFailureAtAnyWriteTakesBackTheWholeChange) {
    const auto changes = Changes();
    for (size_t change = 0; change < changes.size(); ++change) {
        for (int failing = 1;; ++failing) {
            Load(kIni);
            const std::string before = folder_.IniBytes();
            int writes = 0;
            const auto fail = [&] {
                SetLastError(ERROR_DISK_FULL);
                return ++writes == failing;
            };
            bool stored = false;
            {
                const auto value = FAKE_CALL(
                    WritePrivateProfileStringA, [&](LPCSTR section, LPCSTR key, LPCSTR text, LPCSTR file) {
                        return fail() ? FALSE
                                      : ORIGINAL_CALL(WritePrivateProfileStringA)(section, key, text, file);
                    });
                const auto list =
                    FAKE_CALL(WritePrivateProfileSectionA, [&](LPCSTR section, LPCSTR text, LPCSTR file) {
                        return fail() ? FALSE
                                      : ORIGINAL_CALL(WritePrivateProfileSectionA)(section, text, file);
                    });
                stored = changes[change](store_);
            }
            if (writes < failing) {
                EXPECT_TRUE(stored) << change;
                break;
            }
            EXPECT_FALSE(stored) << change << " " << failing;
            EXPECT_EQ(folder_.IniBytes(), before) << change << " " << failing;
            EXPECT_EQ(records_.At("11"), "Notes|3") << change << " " << failing;
        }
    }
}

}  // namespace
}  // namespace model
