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
    bool isThere = false;  ///< it has got there
    std::string from{};    ///< where the file was, and is when it has not got there
    std::string record{};  ///< the button's then
};

/// The button that commands act on, and the record table they share.
struct ButtonContext {
    std::int16_t CurrentButtonIndex = 1;  ///< 1 to 9
    std::string CurrentButtonKey = "11";  ///< that button's key
    ButtonRecords Records;                ///< of all tabs and buttons
    /// Files of which it could not be stored yet that they were moved. What leads to them is not refreshed
    /// before that: there is nothing where it leads.
    std::vector<MovedFile> Moved;
    /// Something that is shown could not be read: it is to be refreshed soon. Nothing happens while it is
    /// empty.
    std::function<void()> onUnread;
    /// What is stored of these shortcuts was changed by a dialog. Nothing happens while it is empty.
    std::function<void(const std::vector<std::string>&)> onChanged;

    /// The file of the shortcut of this name, in whatever case, among those above; null for none.
    [[nodiscard]] const MovedFile* MovedFileOf(const std::string& name) const;

    /// Makes the button of the shown tab with this number the current one.
    void Select(int index);
};

/// The key of the first button in the file whose record has this name, in this spelling; "" when there is
/// none or the name is empty, nothing when the file could not be read. Throws InvalidArgumentError when the
/// section has an entry without "=".
std::optional<std::string> FindButtonKey(const std::string& name);

/// Keys and records of all buttons in the file that lead to the shortcut of this name, in whatever case.
/// A line that is no button's record is passed over. Nothing when the file could not be read.
std::optional<std::vector<std::pair<std::string, std::string>>> ButtonsNamed(const std::string& name);

}  // namespace model
