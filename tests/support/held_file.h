// Holds a file as a virus scanner or a backup does: open, and shared with nobody.
//
//     {
//         const HeldFile held(folder.IniPath());
//         commands.Free();                       // can neither read nor write
//     }
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "tests/support/text.h"
#include "win/handles.h"

namespace testkit {

class HeldFile {
  public:
    explicit HeldFile(const std::string& path)
        : file_(CreateFileW(Wide(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)) {
        if (!file_) throw std::runtime_error("could not hold " + path);
    }

  private:
    win::File file_;
};

}  // namespace testkit
