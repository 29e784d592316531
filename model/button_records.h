#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/button_place.h"

namespace model {

/// The section of the configuration file that holds the records of tabs and buttons.
constexpr const char* kButtonsSection = "Buttons";

/// The records of all tabs and buttons as last read or written, by key "10" to "69".
/// A key outside that range throws SubscriptError, one whose number does not fit 32 bits OverflowError.
class ButtonRecords {
  public:
    /// Reads all 60 keys from the configuration file, in order. Throws RuntimeError, and leaves the table as
    /// it was, when the file cannot be read.
    void LoadButtonRecords();

    /// The record of a key; "" for a free button.
    [[nodiscard]] const std::string& At(const std::string& key) const;

    /// Replaces the record of a key in the table alone; the file stays as it is.
    void Set(const std::string& key, const std::string& record);

  private:
    static constexpr int kRecordCount = 60;

    static size_t IndexOf(const std::string& key);

    std::array<std::string, kRecordCount> records_;
};

/// A file that was moved or renamed, with the button that led to it.
struct MovedFile {
    ButtonPlace place;
    std::int32_t icon = 0;
    std::string name;      ///< the shortcut's
    std::string path;      ///< where the file was to go
    bool isThere = false;  ///< it has arrived there
    std::string from{};    ///< where the file was, and still is when it has not arrived
    std::string record{};  ///< the button's record at that time
};

/// The button that commands act on, and the record table they share.
struct ButtonContext {
    std::int16_t CurrentButtonIndex = 1;  ///< 1 to 9
    std::string CurrentButtonKey = "11";  ///< that button's key
    ButtonRecords Records;                ///< of all tabs and buttons
    /// Files that were moved, as long as this could not be stored. Buttons that lead to them are not
    /// refreshed before that: there is nothing where they lead.
    std::vector<MovedFile> Moved;
    /// Called when something that is shown could not be read and should be refreshed soon. May be empty.
    std::function<void()> onUnread;
    /// Called when a dialog has changed what is stored of these shortcuts. May be empty.
    std::function<void(const std::vector<std::string>&)> onChanged;

    /// The file among those above whose shortcut has this name, ignoring case; null for none.
    [[nodiscard]] const MovedFile* MovedFileOf(const std::string& name) const;

    /// Makes the button of the shown tab with this number the current one.
    void Select(int index);
};

/// The key of the first button in the file whose record has this name, in this spelling; "" when there is
/// none or the name is empty, nothing when the file could not be read. Throws InvalidArgumentError when the
/// section has an entry without "=".
std::optional<std::string> FindButtonKey(const std::string& name);

/// Keys and records of all buttons in the file that lead to the shortcut of this name, ignoring case.
/// A line that is no button's record is passed over. Nothing when the file could not be read.
std::optional<std::vector<std::pair<std::string, std::string>>> ButtonsNamed(const std::string& name);

}  // namespace model
