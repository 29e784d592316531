#pragma once

#include <cstddef>
#include <string>

namespace model {

/// The longest name in bytes: a record is read back to at most 554 of them, and behind the name stand "|" and
/// an icon's index.
constexpr size_t kLongestName = 540;

/// The name as the configuration file can hold it as a key and a record as a field: without "=", "|" and
/// control characters, without a leading "[" or ";", without outer blanks, and other than the word that
/// means a free button, and not longer than a record can be read back. A name that can be stored comes back
/// unchanged; nothing left gives "".
std::string StorableName(const std::string& name);

/// The storable name for a target: its file name without extension, else the file name, else the last element
/// that is not empty; "" when it has none.
std::string NameForTarget(const std::string& target);

/// Whether a target can be read back from the file as it is: not too long, and without control characters, of
/// which a line break would begin a new line there.
bool IsStorableTarget(const std::string& target);

/// The target as it is stored: a "|" inside a URL would make a group of it, so it is written as URLs write
/// what has a meaning of its own. Anything else, also a group, comes back unchanged.
std::string StorableTarget(const std::string& target);

/// The text with blanks for its control characters, of which a line break would begin a new line of the file.
std::string WithoutControls(std::string text);

/// The value as it must be written to be read back whole: the profile functions strip one pair of quotes
/// around a value, so a text that begins and ends with the same quote gets another pair.
std::string WithKeptQuotes(const std::string& value);

/// The switch as the configuration file must hold it: with its quotes, and with blanks for control
/// characters.
std::string StorableSwitch(const std::string& commandSwitch);

}  // namespace model
