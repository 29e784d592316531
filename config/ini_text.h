#pragma once

#include <string>
#include <string_view>

namespace config {

/// Whether a section of a configuration file, given as the file's bytes, holds comment lines. A file in
/// UTF-16 counts as one with comments everywhere.
bool SectionHasComments(std::string_view bytes, const std::string& section);

/// Whether a section of a configuration file, given as the file's bytes, has this key, with a value or
/// without. A file in UTF-16 counts as one with every key.
bool SectionHasKey(std::string_view bytes, const std::string& section, const std::string& key);

}  // namespace config
