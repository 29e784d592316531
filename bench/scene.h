#pragma once

#include <array>
#include <string>

#include "model/button_records.h"
#include "tests/support/program_folder.h"

namespace bench {

/// Makes a file an hour old. While a profile file is young, Wine reads all of it again for each value.
void MakeOld(const std::string& path);

/// One button of the scene.
struct SceneButton {
    std::string name;
    std::string target;      ///< full path of a program or a file
    std::string switchText;  ///< "" for none
};

/// The buttons of one tab.
using SceneTab = std::array<SceneButton, model::kButtonCount>;

/// A program folder in which tabs 1 and 2 hold nine buttons each: seven programs, all with icons, and two
/// files that a program is associated with. Tab 2 holds those of tab 1 in reverse order under other names, so
/// that every face changes with the tab.
class Scene {
  public:
    Scene();

    [[nodiscard]] const testkit::ProgramFolder& Folder() const { return folder_; }

    /// Tab 1 or 2.
    [[nodiscard]] const SceneTab& Tab(int number) const { return tabs_.at(static_cast<size_t>(number) - 1); }

    /// The product's and the floor program's paths in the folder.
    [[nodiscard]] const std::string& Quon() const { return quon_; }
    [[nodiscard]] const std::string& Floor() const { return floor_; }

    /// Makes Quon.ini an hour old.
    void AgeIni() const;

  private:
    void WriteIni() const;

    testkit::ProgramFolder folder_;
    std::array<SceneTab, 2> tabs_;
    std::string quon_;
    std::string floor_;
};

}  // namespace bench
