// Points the product's configuration at a test's own file, for the time of a test.
//
//     ProgramFolder folder;
//     ScopedIniPath ini(folder.IniPath());
//     folder.WriteIniText("[Settings]\r\nMain=1\r\n");
//     EXPECT_EQ(config::ReadIni("Settings", "Main"), "1");
#pragma once

#include <string>
#include <utility>

#include "config/ini.h"

namespace testkit {

/// Sets config::IniPath and puts the former path back when destroyed.
class ScopedIniPath {
  public:
    explicit ScopedIniPath(std::string path) : before_(std::exchange(config::IniPath, std::move(path))) {}
    ~ScopedIniPath() { config::IniPath = before_; }
    ScopedIniPath(const ScopedIniPath&) = delete;
    ScopedIniPath& operator=(const ScopedIniPath&) = delete;

  private:
    std::string before_;
};

}  // namespace testkit
