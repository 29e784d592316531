#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace config {

/// The full path of the configuration file; set once at start-up, read by every operation below.
extern std::string IniPath;

/// The longest value that is read back whole, in bytes.
constexpr size_t kLongestValue = 554;

/// The section's "key=value" entries with one NUL between them; "" for an empty or missing section.
/// A section of more than 19998 characters comes back cut short (GetPrivateProfileSectionA).
std::string ReadIniSection(const std::string& section);

/// One value, at most its first 554 characters; "" when there is none (GetPrivateProfileStringA).
std::string ReadIni(const std::string& section, const std::string& key);

/// Writes one value; the outcome is not checked (WritePrivateProfileStringA).
void WriteIni(const std::string& section, const std::string& key, const std::string& value);

/// Replaces the whole section by NUL-separated entries; "" empties it (WritePrivateProfileSectionA).
void WriteIniSection(const std::string& section, const std::string& data);

/// The section's keys in file order, joined by "|"; "" for an empty section.
/// Throws InvalidArgumentError for an entry without "=".
std::string ListIniKeys(const std::string& section);

/// Removes a key by rewriting the section: an absent key takes the first entry with it, and every value
/// left is cut at its first "=". Use RemoveRecord, which guards against both.
/// Throws SubscriptError for an entry without "=", before anything is changed.
void DeleteIniKey(const std::string& section, const std::string& key);

/// Removes the record of a key, compared ignoring case, and leaves every other record whole.
/// Does nothing when there is none.
void RemoveRecord(const std::string& section, const std::string& key);

/// The entries of a section's text as ReadIniSection gives it; none for "".
std::vector<std::string> SectionEntries(const std::string& sectionText);

}  // namespace config
