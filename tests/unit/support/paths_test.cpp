#include "tests/support/paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace testkit {
namespace {

using ::testing::EndsWith, ::testing::HasSubstr;

TEST(PathsTest, SpellsAPathOfTheBuildMachineAsWindowsDoes) {
    EXPECT_EQ(WindowsPath("/srv/user/build dir"), "Z:\\srv\\user\\build dir");
    EXPECT_EQ(WindowsPath("C:\\users\\a"), "C:\\users\\a");
    EXPECT_EQ(WindowsPath("C:/users/a"), "C:\\users\\a");
}

TEST(PathsTest, DividesAPathAtItsLastBackslash) {
    EXPECT_EQ(FolderOf("C:\\a\\b.txt"), "C:\\a");
    EXPECT_EQ(NameOf("C:\\a\\b.txt"), "b.txt");
    EXPECT_EQ(FolderOf("b.txt"), "");
    EXPECT_EQ(NameOf("b.txt"), "b.txt");
}

TEST(PathsTest, FindsTheHelpersBesideTheTestProgram) {
    EXPECT_TRUE(FileExists(TestTargetExe()));
    EXPECT_THAT(QuonExe(), EndsWith("\\Quon.exe"));
    EXPECT_THAT(NewUsersIni(), HasSubstr("[Settings]"));
    EXPECT_EQ(EnvironmentValue("QUON_NO_SUCH_VARIABLE"), "");
}

}  // namespace
}  // namespace testkit
