#include "tests/support/scoped_ini_path.h"

#include <gtest/gtest.h>

#include "tests/support/program_folder.h"

namespace testkit {
namespace {

TEST(ScopedIniPathTest, PointsTheConfigurationAtAFileForAWhile) {
    const std::string before = config::IniPath;
    {
        const ProgramFolder folder;
        const ScopedIniPath path(folder.IniPath());
        folder.WriteIniText("[Settings]\r\nMain=1\r\n");
        EXPECT_EQ(config::ReadIni("Settings", "Main"), "1");
        config::WriteIni("Settings", "Main", "0");
        EXPECT_EQ(folder.IniValue("Settings", "Main"), "0");
    }
    EXPECT_EQ(config::IniPath, before);
}

}  // namespace
}  // namespace testkit
