#include "config/ini_comments.h"

#include <gtest/gtest.h>

#include <string>

namespace config {
namespace {

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
