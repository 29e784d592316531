// A throw-away folder for one test: the program folder with its Quon.ini, or just a place for files.
//
//     ProgramFolder folder;                                        // C:\...\Temp\quon-1234-1
//     folder.WriteIniText("[Settings]\r\nMain=1\r\n");
//     const std::string target = folder.MakeFile("Наставления\\a.txt", "text");
//     folder.MakeLink("a.lnk", {.target = target, .arguments = "/x"});
//     ...
//     EXPECT_EQ(folder.IniValue("Settings", "Main"), "0");         // read from the bytes: see ini_text.h
//
// All names are UTF-8. A relative name is taken from the folder; whatever sub-folder it names is made. The
// destructor deletes everything in it, read-only files too; something that a program still holds open is
// waited for a while and then fails the test.
// Code under test that reads config::IniPath needs a ScopedIniPath (scoped_ini_path.h) as well.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/ini_text.h"
#include "tests/support/paths.h"

namespace testkit {

/// What a shell link (.lnk) says. What is left empty is not set.
struct LinkDetails {
    std::string target = {};
    std::string arguments = {};
    std::string description = {};
    std::string work_folder = {};
    std::string icon_path = {};
    int icon_index = 0;
    /// SW_SHOWNORMAL, SW_SHOWMAXIMIZED or SW_SHOWMINNOACTIVE; 0: not set.
    int show_state = 0;
};

class ProgramFolder {
  public:
    /// Makes <temporary folder>\<name>-<process>-<count>.
    explicit ProgramFolder(std::string_view name = "quon");
    ~ProgramFolder();
    ProgramFolder(const ProgramFolder&) = delete;
    ProgramFolder& operator=(const ProgramFolder&) = delete;

    /// The folder's full path without a "\" at its end.
    const std::string& Path() const { return path_; }
    /// The full path of a name in the folder; makes nothing.
    std::string FullPath(std::string_view relative) const;
    bool Exists(std::string_view relative) const;

    /// A file with these bytes (replaced when there is one); returns its full path.
    std::string MakeFile(std::string_view relative, std::string_view bytes = {}) const;
    std::string MakeFolder(std::string_view relative) const;
    /// A shell link; returns its full path. `relative` ends in ".lnk".
    std::string MakeLink(std::string_view relative, const LinkDetails& details) const;
    /// A copy of any file (full path); without a name it keeps its own. Returns the copy's full path.
    std::string CopyIn(const std::string& source, std::string_view relative = {}) const;
    std::string ReadFile(std::string_view relative) const;
    void SetReadOnly(std::string_view relative) const;
    void RemoveFile(std::string_view relative) const;

    std::string IniPath() const { return FullPath("Quon.ini"); }
    /// Replaces Quon.ini by exactly these bytes.
    void WriteIniText(std::string_view bytes) const { MakeFile("Quon.ini", bytes); }
    /// Quon.ini byte by byte; "" when there is none.
    std::string IniBytes() const;
    IniText Ini() const { return IniText(IniBytes()); }
    std::optional<std::string> IniValue(std::string_view section, std::string_view key) const {
        return Ini().Value(section, key);
    }
    /// The entries of a section of Quon.ini as "key=value", in order.
    std::vector<std::string> IniLines(std::string_view section) const;

  private:
    std::string path_;
};

}  // namespace testkit
