#pragma once

#include <string>
#include <string_view>

namespace config {

/// Whether comment lines stand in a section of a configuration file that is given byte by byte. A file in
/// UTF-16 counts as one with comments everywhere.
bool SectionHasComments(std::string_view bytes, const std::string& section);

}  // namespace config
