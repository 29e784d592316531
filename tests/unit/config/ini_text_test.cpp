#include "config/ini_text.h"

#include <gtest/gtest.h>

#include <string>

namespace config {
namespace {

TEST(IniKeyTest, IsFoundInTheSectionWhereItStands) {
    const std::string text =
        "; Main=0\r\n[Settings]\r\nother=Main=1\r\n  mAIN =\r\n[Cuts]\r\nMain=2\r\nx\r\n";
    EXPECT_TRUE(SectionHasKey(text, "SETTINGS", "Main"));
    EXPECT_TRUE(SectionHasKey("\xEF\xBB\xBF" + text, "Settings", "other"));
    EXPECT_TRUE(SectionHasKey("\xEF\xBB\xBF[Settings]\nMain=1", "Settings", "Main"));
    EXPECT_FALSE(SectionHasKey(text, "Switch", "Main"));
    EXPECT_FALSE(SectionHasKey(text, "Cuts", "x"));
    EXPECT_FALSE(SectionHasKey("[Settings]\r\n;Main=1\r\nMain", "Settings", "Main"));
    EXPECT_TRUE(SectionHasKey("\xFF\xFE[", "Settings", "Main")) << "nothing is known of it";
}

TEST(IniCommentsTest, AreFoundInTheSectionWhereTheyStand) {
    const std::string text =
        "; before\r\n[Cuts]\r\na=1\r\n\r\n  ; mine\r\n[Switch]\r\na=;x\r\n[Buttons]\n\t;last";
    EXPECT_TRUE(SectionHasComments(text, "Cuts"));
    EXPECT_TRUE(SectionHasComments(text, "cUTS"));
    EXPECT_FALSE(SectionHasComments(text, "Switch")) << "a value, no comment";
    EXPECT_TRUE(SectionHasComments(text, "Buttons"));
    EXPECT_FALSE(SectionHasComments(text, "Collected"));
    EXPECT_FALSE(SectionHasComments("", "Cuts"));
    EXPECT_FALSE(SectionHasComments("[", "Cuts"));
    EXPECT_FALSE(SectionHasComments("[Cuts", "")) << "no end of the name";
}

TEST(IniCommentsTest, AreFoundWhereTheNameStandsInBlanksOrAfterAMark) {
    EXPECT_TRUE(SectionHasComments(" [Cuts] \r\n;x", "Cuts"));
    EXPECT_TRUE(SectionHasComments("\xEF\xBB\xBF[Cuts]\r\n;x", "Cuts"));
    EXPECT_TRUE(SectionHasComments("[Пречице]\n;x\n", "ПРЕЧИЦЕ"));
    EXPECT_TRUE(SectionHasComments("[Cuts]\r\na=1\r\n[Other]\r\n[Cuts]\r\n;x", "Cuts")) << "twice";
}

TEST(IniCommentsTest, AreSupposedInAFileOfWideCharacters) {
    using namespace std::string_literals;
    EXPECT_TRUE(SectionHasComments("\xFF\xFE[\0"s, "Cuts"));
    EXPECT_TRUE(SectionHasComments("\xFE\xFF\0["s, "Cuts"));
}

}  // namespace
}  // namespace config
