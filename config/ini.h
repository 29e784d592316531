#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "config/patience.h"

namespace config {
/// Access to the configuration file.
inline namespace m_Ini {

/// The full path of the configuration file; set once at start-up, read by every operation below.
extern std::string IniPath;

/// The longest value that is read back whole, in bytes.
constexpr size_t kLongestValue = 554;

/// The section's "key=value" entries with one NUL between them; "" for an empty or missing section.
/// A section of more than 19998 characters comes back cut short (GetPrivateProfileSectionA).
std::string ReadIniSection(const std::string& section);

/// As ReadIniSection, but nothing when Windows could not read the file: it is held, denied to us, missing, or
/// empty or not whole as while another program writes it.
std::optional<std::string> TryReadIniSection(const std::string& section);

/// One value, at most its first 554 characters; "" when there is none (GetPrivateProfileStringA).
std::string ReadIni(const std::string& section, const std::string& key);

/// As ReadIni, but nothing when Windows could not read the file: it is held, denied to us, missing, or empty
/// or not whole as while another program writes it. Only "" says that there is no such record.
std::optional<std::string> TryReadIni(const std::string& section, const std::string& key);

/// As TryReadIni, but what says that there is no such record can be acted upon: Windows has the same answer
/// for that and, on some systems, for a file that another program keeps to itself.
std::optional<std::string> ReadIniForCertain(const std::string& section, const std::string& key);

/// Writes one value in the open unit of writes, else in one of its own (WritePrivateProfileStringA). False
/// when it failed, which a caller may ignore.
bool WriteIni(const std::string& section, const std::string& key, const std::string& value);

/// Replaces the whole section by NUL-separated entries; "" empties it (WritePrivateProfileSectionA). Comment
/// lines in it are lost. False when it failed.
bool WriteIniSection(const std::string& section, const std::string& data);

/// The section's keys in file order, joined by "|"; "" for an empty section.
/// Throws InvalidArgumentError for an entry without "=".
std::string ListIniKeys(const std::string& section);

/// Removes a key by rewriting the section. If the key is absent the first entry goes instead, and every value
/// that stays is cut at its first "=". Use RemoveRecord, which guards against both.
/// Throws SubscriptError for an entry without "=", before anything is changed. False when it failed.
bool DeleteIniKey(const std::string& section, const std::string& key);

/// Removes the record of a key, compared ignoring case, and leaves every other record and the user's comment
/// lines whole. Does nothing when there is none. False when it failed; a unit that is open has failed then.
bool RemoveRecord(const std::string& section, const std::string& key);

/// As ReadIni, of a record that belongs to every configuration file: where it is found, this file without it
/// counts from now on as one that could not be read, though something is in it. Another program is writing
/// it then, and has got so far.
std::string ReadRequired(const std::string& section, const std::string& key);

/// During a start: waits for this record, at most a second in all, together with all other reads of the
/// start. Without it another program may be just saving the file. A record that only the mark of UTF-8 before
/// the first line keeps from being read is made readable.
void AwaitRequired(const std::string& section, const std::string& key);

/// Whether the configuration file is whole, as far as is known: false where it has no longer the record
/// above.
bool IsWhole();

/// Whether the configuration file has had the record above at any time.
bool WasWhole();

/// Lives while the program starts: a configuration file that another program holds is waited for some
/// seconds, and a read that still fails throws RuntimeError, which says what keeps us from the file. One that
/// is missing, empty or not whole is waited for a second in all; then there is no such record.
class IniStart {
  public:
    IniStart() noexcept;
    IniStart(const IniStart&) = delete;
    IniStart& operator=(const IniStart&) = delete;
    IniStart(IniStart&&) = delete;
    IniStart& operator=(IniStart&&) = delete;
    ~IniStart();

  private:
    LongPatience patience_;
};

/// The entries of a section's text as ReadIniSection gives it; none for "".
std::vector<std::string> SectionEntries(const std::string& sectionText);

/// Whether a section's text as ReadIniSection gives it was cut because the section is too long.
bool WasCut(const std::string& sectionText);

}  // namespace m_Ini
}  // namespace config
