#pragma once

#include <cstdint>
#include <string>

namespace config {

/// The user's options in memory; loaded at start-up, saved when the main window unloads.
struct SettingsRecord {
    std::int16_t CurrentTab = 1;        ///< the tab shown, 1 to 6
    bool StartWithWindows = false;      ///< a value under the Run key starts the program
    bool StartGlued = false;            ///< at start the window goes straight to its edge
    bool HideAfterLaunch = false;       ///< the window hides after a shortcut is opened
    bool TaskbarProcessesOnly = false;  ///< offer only running programs that appear in the taskbar
    bool CloseButtonCloses = false;     ///< the close button ends the program instead of hiding the window
    bool ExtensiveTooltips = false;     ///< tips tell what a button or a tab holds
    std::int32_t Edge = 0;              ///< 1 left, 2 top, 3 right, 4 bottom
    bool SingleClickOpen = false;       ///< one click on a button opens its file
    bool ShowCollected = false;         ///< collected applications are in the text-shortcut list
    bool TabDescriptions = false;       ///< a tab's tip shows its description instead of its contents
    bool PopOnHover = false;            ///< hovering over the hidden window brings it out
    std::int32_t PopDelay = 500;        ///< hover delay in milliseconds
    bool ClickShows = false;            ///< a click on the hidden window brings it out
    std::uint16_t HotKey = 0;           ///< brings the panel out: HKM_GETHOTKEY's word; 0 for none
};

/// The one settings record of the process.
extern SettingsRecord Settings;

/// During a start: waits up to a second for a file that has "Main", in case another program is just saving
/// it.
void AwaitSettings();

/// Reads "Main" into the record. Throws SubscriptError for a missing field, TypeMismatchError for a field
/// that is no boolean, OverflowError for a number too large; the message names the field and its value.
void LoadMainSettings();

/// Reads "poptf", "popdelay" and "clickshow"; absent ones give false, 500 and false. Throws as above.
void LoadPopUpSettings();

/// Throws what LoadPopUpSettings would throw, and changes nothing.
void CheckPopUpSettings();

/// Reads "hotkey"; what is no number from 1 to 65535 is none. Throws nothing.
void LoadHotKey();

/// Writes "Main", "popdelay", "poptf" and "clickshow", in this order, and "hotkey" where there is or was one.
/// False when the file could not be written, and is as it was.
bool SaveSettings();

/// The number that a text begins with, else 0; `name` is what the error message calls it.
/// Throws OverflowError outside the 32-bit range.
std::int32_t LeadingNumber(const std::string& text, const std::string& name);

/// The number that a text is as a whole, rounded; `name` is what the error message calls it.
/// Throws TypeMismatchError for a text that is no number, OverflowError outside the 32-bit range.
std::int32_t ToNumber(const std::string& text, const std::string& name);

/// "True" or "False" in any case, or a number (zero is false). Throws TypeMismatchError for anything else.
bool ToBoolean(const std::string& text, const std::string& name);

}  // namespace config
