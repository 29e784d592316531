#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace model {

/// How many tabs there are, and how many buttons each shows.
constexpr int kTabCount = 6;
constexpr int kButtonCount = 9;
/// The section of the configuration file that holds the records of tabs and buttons.
constexpr const char* kButtonsSection = "Buttons";

/// The key of a button's record, or of the tab's own for button 0: "11" to "69", "10" to "60".
std::string ButtonKey(int tab, int button);

/// The records of all tabs and buttons as last read or written, by key "10" to "69".
/// A key outside that range throws SubscriptError, one whose number does not fit 32 bits OverflowError.
class ButtonRecords {
  public:
    /// Reads all 60 keys from the configuration file, in order.
    void LoadButtonRecords();

    /// The record of a key; "" for a free button.
    [[nodiscard]] const std::string& At(const std::string& key) const;

    /// Replaces the record of a key in the table alone; the file stays as it is.
    void Set(const std::string& key, const std::string& record);

  private:
    static constexpr int kFirstKey = 10;
    static constexpr int kRecordCount = 60;

    static size_t IndexOf(const std::string& key);

    std::array<std::string, kRecordCount> records_;
};

/// The button that commands act on, and the record table they share.
struct ButtonContext {
    std::int16_t CurrentButtonIndex = 1;  ///< 1 to 9
    std::string CurrentButtonKey = "11";  ///< that button's key, see ButtonKey
    ButtonRecords Records;                ///< of all tabs and buttons

    /// Makes the button of the shown tab with this number the current one.
    void Select(int index);

    /// Writes a record to the configuration file and to the table. Throws SubscriptError for a key outside
    /// the table.
    void Write(const std::string& key, const std::string& record);
};

/// The name that a button's record refers to: the text before its first "|"; for the record "Group" the
/// button's own key, under which its members are stored.
std::string RecordName(const std::string& key, const std::string& record);

/// The key of the first button in the file whose record has this name, in this spelling; "" when there is
/// none or the name is empty. Throws InvalidArgumentError when the section has an entry without "=".
std::string FindButtonKey(const std::string& name);

}  // namespace model
