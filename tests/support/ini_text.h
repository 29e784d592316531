// Reads configuration text for assertions, without the profile functions that the product uses: they cache,
// trim, strip quotes and ignore case, and a test wants to see what really stands in the file.
//
//     IniText ini(folder.IniBytes());
//     EXPECT_EQ(ini.Value("Settings", "Main"), "1");           // optional: nullopt when there is no such key
//     EXPECT_THAT(ini.Keys("Tab1"), ElementsAre("pb1", "pb2"));
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace testkit {

/// The sections and entries of configuration text. Spelling counts in names; a value is everything between
/// the first "=" of its line and the line's end, blanks and quotes included; blanks around a key are dropped.
/// Lines that begin with ";" and lines without "=" are no entries.
class IniText {
  public:
    struct Entry {
        std::string key;
        std::string value;
        bool operator==(const Entry&) const = default;
    };

    explicit IniText(std::string_view text);

    bool HasSection(std::string_view section) const { return Find(section) != nullptr; }
    std::vector<std::string> Sections() const;
    /// The entries in file order, doubles included; none when the section is missing.
    std::vector<Entry> Entries(std::string_view section) const;
    std::vector<std::string> Keys(std::string_view section) const;
    /// The value of the first entry with this key.
    std::optional<std::string> Value(std::string_view section, std::string_view key) const;

  private:
    struct Section {
        std::string name;
        std::vector<Entry> entries;
    };
    const Section* Find(std::string_view section) const;

    std::vector<Section> sections_;
};

}  // namespace testkit
