#include "tests/support/ini_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace testkit {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

TEST(IniTextTest, ListsSectionsAndEntriesInFileOrder) {
    const IniText ini("[One]\r\nb=2\r\na=1\r\n\r\n[Two]\n[Three]\nc=3");
    EXPECT_THAT(ini.Sections(), ElementsAre("One", "Two", "Three"));
    EXPECT_THAT(ini.Keys("One"), ElementsAre("b", "a"));
    EXPECT_THAT(ini.Keys("Two"), IsEmpty());
    EXPECT_TRUE(ini.HasSection("Two"));
    EXPECT_FALSE(ini.HasSection("Four"));
    EXPECT_EQ(ini.Value("Three", "c"), "3");
}

TEST(IniTextTest, KeepsAValueAsItStands) {
    const IniText ini("[S]\r\n key = \"v\" = w \r\n");
    EXPECT_EQ(ini.Value("S", "key"), " \"v\" = w ");
}

TEST(IniTextTest, SkipsCommentsAndLinesWithoutEquals) {
    const IniText ini("stray=1\n[S]\n;x=1\nword\ny=2\n");
    EXPECT_THAT(ini.Keys("S"), ElementsAre("y"));
}

TEST(IniTextTest, ShowsDoublesAndAnswersTheFirst) {
    const IniText ini("[S]\nx=1\nx=2\nX=3\n");
    EXPECT_THAT(ini.Entries("S"),
                ElementsAre(IniText::Entry{"x", "1"}, IniText::Entry{"x", "2"}, IniText::Entry{"X", "3"}));
    EXPECT_EQ(ini.Value("S", "x"), "1");
    EXPECT_EQ(ini.Value("S", "X"), "3");
}

}  // namespace
}  // namespace testkit
