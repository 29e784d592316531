#include "model/storable_name.h"

#include "config/ini.h"
#include "tests/support/unit_test.h"

namespace {

constexpr const char* kPlainNames[] = {"Notes",      "My notes 2", "a.b.c",  "żółw",     "Заметки", "笔记",
                                       "😀",         "Empty 2",    "Emptyy", "empt",     "a[b]",    "a;b",
                                       "\"quoted\"", "'a'",        "#a",     "?query",   "a&b",     "a/b",
                                       "a - b",      "e\xCC\x81",  "11",     "Group",    "a,b",     "(a)",
                                       "{a}",        "%a%",        "True",   "\xC2\xA0x"};

std::string Repeated(const std::string& text, int count) {
    std::string repeated;
    for (int index = 0; index < count; ++index)
        repeated += text;
    return repeated;
}

TEST(StorableNameTest, LeavesANameAloneThatCanBeStored) {
    for (const std::string name : kPlainNames)
        EXPECT_EQ(model::StorableName(name), name);
}

const std::pair<std::string, std::string> kOddNames[] = {
    {"a=b", "a-b"},
    {"a|b", "a-b"},
    {"=|=", "---"},
    {"a==b||c", "a--b--c"},
    {"[a]", "a]"},
    {"[[a", "a"},
    {";a", "a"},
    {" ;[ a", "a"},
    {"[;[;a", "a"},
    {" a ", "a"},
    {"a\tb", "a b"},
    {"\ta\r\n", "a"},
    {std::string("a\0b", 3), "a b"},
    {"a\x01\x1F\x7F"
     "b",
     "a   b"},
    {"\x1A"
     "a",
     "a"},
    {"Empty", "Empty_"},
    {"EMPTY", "EMPTY_"},
    {"empty", "empty_"},
    {" Empty ", "Empty_"},
    {"[Empty", "Empty_"},
    {"Заметки = 笔记|żółw", "Заметки - 笔记-żółw"},
};

TEST(StorableNameTest, MakesAnyOtherNameStorable) {
    for (const auto& [name, storable] : kOddNames)
        EXPECT_EQ(model::StorableName(name), storable) << "of \"" << name << "\"";
}

TEST(StorableNameTest, LeavesNothingOfANameThatHasNothingToStore) {
    for (const std::string name : {"", " ", "   ", "[", ";", "[;[ ;", "\t\r\n", "\x01"})
        EXPECT_EQ(model::StorableName(name), "") << "of \"" << name << "\"";
}

TEST(StorableNameTest, GivesItsOwnAnswerBackUnchanged) {
    for (const auto& [name, storable] : kOddNames)
        EXPECT_EQ(model::StorableName(storable), storable);
}

TEST(StorableNameTest, GivesNamesThatTheFileHoldsAndTheRecordsKeepApart) {
    const testkit::ProgramFolder folder;
    const testkit::ScopedIniPath path(folder.IniPath());
    std::vector<std::string> names;
    for (const std::string name : kPlainNames)
        names.push_back(model::StorableName(name));
    for (const auto& [name, storable] : kOddNames)
        names.push_back(model::StorableName(name));
    for (const std::string& name : names) {
        folder.WriteIniText("");
        config::WriteIni("Cuts", name, "C:\\a=b.txt");
        config::WriteIni("Buttons", "11", name + "|0");
        EXPECT_EQ(config::ReadIni("Cuts", name), "C:\\a=b.txt") << name;
        EXPECT_EQ(config::ListIniKeys("Cuts"), name);
        EXPECT_EQ(config::ReadIni("Buttons", "11"), name + "|0");
    }
}

TEST(StorableNameTest, CutsANameThatARecordCouldNotGiveBack) {
    const std::string fits(540, 'x');
    EXPECT_EQ(model::StorableName(fits), fits);
    EXPECT_EQ(model::StorableName(fits + "y"), fits);
    // Only whole characters are taken away: three bytes each here, four in the second text.
    EXPECT_EQ(model::StorableName("xx" + Repeated("文", 200)), "xx" + Repeated("文", 179));
    EXPECT_EQ(model::StorableName("x" + Repeated("😀", 200)), "x" + Repeated("😀", 134));
}

TEST(StorableNameTest, CutsALongNameBeforeBytesThatAreNoCharacter) {
    const std::string broken(600, '\xFF');
    EXPECT_EQ(model::StorableName("ab" + broken), "ab");
    EXPECT_EQ(model::StorableName(broken), "");
}

TEST(IsStorableTargetTest, RefusesWhatTheFileDoesNotGiveBackAsItIs) {
    for (const std::string target : {"", "C:\\Заметки 笔记.txt", "http://a/?x=y|z", "C:\\del\x7F.txt"})
        EXPECT_TRUE(model::IsStorableTarget(target)) << target;
    EXPECT_TRUE(model::IsStorableTarget(std::string(554, 'x')));
    EXPECT_FALSE(model::IsStorableTarget(std::string(555, 'x')));
    for (const std::string target : {"http://a/\r[Cuts]", "http://a/\nb", "http://a/\tb"})
        EXPECT_FALSE(model::IsStorableTarget(target)) << target;
}

TEST(StorableSwitchTest, GivesASwitchInQuotesOneMorePair) {
    const std::pair<const char*, const char*> switches[] = {{"", ""},
                                                            {"/x", "/x"},
                                                            {"\"a\"", "\"\"a\"\""},
                                                            {"'a'", "''a''"},
                                                            {"\"\"", "\"\"\"\""},
                                                            {"''", "''''"},
                                                            {"\"", "\""},
                                                            {"'", "'"},
                                                            {"\"a'", "\"a'"},
                                                            {"\"a\" b", "\"a\" b"},
                                                            {"a \"b\"", "a \"b\""},
                                                            {"\"a\" \"b\"", "\"\"a\" \"b\"\""},
                                                            {"xax", "xax"},
                                                            {"/a\r\n[Cuts]\r\n/b\t", "/a  [Cuts]  /b "},
                                                            {"\"żółw 笔记\"", "\"\"żółw 笔记\"\""}};
    for (const auto& [text, stored] : switches)
        EXPECT_EQ(model::StorableSwitch(text), stored);
}

TEST(StorableSwitchTest, GivesSwitchesThatAreReadBackWhole) {
    const testkit::ProgramFolder folder;
    const testkit::ScopedIniPath path(folder.IniPath());
    for (const std::string text : {"/x", "\"a\"", "'a'", "\"\"", "\"", "'", "\"a'", "\"a\" \"b\"",
                                   "\"\"a\"\"", "/x=\"a b\"", "\"Заметки 笔记\"", "a|b", "x=y"}) {
        config::WriteIni("Switch", "Notes", model::StorableSwitch(text));
        EXPECT_EQ(config::ReadIni("Switch", "Notes"), text);
    }
}

TEST(NameForTargetTest, IsTheFileNameWithoutExtension) {
    const std::pair<const char*, const char*> kNames[] = {
        {"C:\\Docs\\report.final.txt", "report.final"},
        {"C:\\Документы\\План работ.docx", "План работ"},
        {"C:\\Docs\\文書", "文書"},
        {"C:\\", "C:"},
        {"https://example.org/a/page.html", "page"},
        {"https://example.org", "example"},
        {"mailto:me@example.org", "mailto:me@example"},
        // The name comes out empty: then it is the one with the extension, then the last element.
        {"C:\\Docs\\.profile", ".profile"},
        {"C:\\Docs\\[;.cfg", ".cfg"},
        {"C:\\.config\\", ".config"},
        {"\\\\", ""},
        {"/", "/"},
        {"", ""},
        // What the file could not hold as a name.
        {"C:\\Docs\\a=b.txt", "a-b"},
        {"C:\\Docs\\[draft].txt", "draft]"},
        {"C:\\Docs\\;old.txt", "old"},
        {"C:\\Docs\\Empty.txt", "Empty_"},
        {"C:\\Docs\\EMPTY.txt", "EMPTY_"},
        {"C:\\Docs\\a\tb.txt", "a b"},
    };
    for (const auto& [target, name] : kNames)
        EXPECT_EQ(model::NameForTarget(target), name) << target;
}

}  // namespace
