#pragma once

#include <string>
#include <unordered_set>
#include <vector>

namespace model {

/// Collects the programs that the system opens some type of file with.
class clsCollectedApps {
  public:
    /// Lets the waiting window messages run, then asks for the program of every file type in
    /// HKEY_CLASSES_ROOT and writes each program once into section "Collected", under the name of its file:
    /// all of them in one unit of writes, or none. False when they could not be stored.
    /// Takes seconds. Does nothing when the messages have ended the program.
    bool CreateAppList();

  private:
    void CollectFor(const std::string& extension);
    [[nodiscard]] bool Store() const;
    [[nodiscard]] bool IsNewProgram(const std::string& answer, const std::string& probe);

    // In the order in which they were found.
    std::vector<std::string> programs_;
    // The same in upper case.
    std::unordered_set<std::wstring> collected_;
};

}  // namespace model
