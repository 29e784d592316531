#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/program_folder.h"
#include "tests/support/scoped_ini_path.h"

/// What a unit of writes in this process calls its file under its first, second, third or fourth name.
inline std::string SideName(int number) {
    return "Quon.ini.unit-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(number);
}

/// A test with a configuration file of its own, which does not exist until the test writes it.
class ConfigFile : public testing::Test {
  protected:
    /// The entries of a section as they stand in the file: "key=value", in order.
    std::vector<std::string> Lines(const std::string& section) const {
        std::vector<std::string> lines;
        for (const auto& entry : folder_.Ini().Entries(section))
            lines.push_back(entry.key + "=" + entry.value);
        return lines;
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath path_{folder_.IniPath()};
};
