#pragma once

#include <cstddef>
#include <string>

namespace model {

/// The longest name in bytes: a record is read back to at most 554 of them, and behind the name stand "|" and
/// an icon's index.
constexpr size_t kLongestName = 540;

/// The name in a form that can be a key of the configuration file and a field of a record: without "=", "|"
/// and control characters, a leading "[" or ";", and outer blanks, different from the word that means a free
/// button, and short enough to be read back in a record. A name that can be stored comes back unchanged; ""
/// when nothing is left.
std::string StorableName(const std::string& name);

/// The storable name for a target: its file name without extension, else the file name, else the last element
/// that is not empty; "" when it has none.
std::string NameForTarget(const std::string& target);

/// Whether a target can be read back from the file as it is: not too long, and without control characters, of
/// which a line break would begin a new line there.
bool IsStorableTarget(const std::string& target);

/// The target as it is stored: a "|" inside a URL would make a group of it, so it becomes "%7C". Anything
/// else, also a group, comes back unchanged.
std::string StorableTarget(const std::string& target);

/// The text with blanks for its control characters, of which a line break would begin a new line of the file.
std::string WithoutControls(std::string text);

/// The value as it must be written to be read back whole: the profile functions strip one pair of quotes
/// around a value, so a text that begins and ends with the same quote gets another pair.
std::string WithKeptQuotes(const std::string& value);

/// The switch as the configuration file must hold it: with its quotes doubled where they would be lost, and
/// with blanks for control characters.
std::string StorableSwitch(const std::string& commandSwitch);

}  // namespace model
