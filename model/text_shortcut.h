#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "win/combo_box.h"

namespace model {

/// The item that ends the drop-down's list.
constexpr const char* kRefreshItem = "[Refresh list]";
/// The section of the collected applications: name = path.
constexpr const char* kCollectedSection = "Collected";
/// What became of opening a text shortcut.
enum class FireResult : std::uint8_t {
    kDone,               ///< it was opened, as far as is known
    kUnread,             ///< the configuration file could not be read
    kSearchToolMissing,  ///< a query was typed and the companion search tool is not in the program folder
};

/// The message for kSearchToolMissing.
std::string SearchToolMessage();

/// The names for the drop-down, from the sections' texts as ReadIniSection gives them: collected
/// applications first when they are wanted, then text shortcuts, each once ignoring case, last the refresh
/// item. Entries without "=" are names among the collected ones and skipped among the shortcuts.
std::vector<std::string> TextShortcutNames(const std::string& collected, const std::string& cuts,
                                           bool showCollected);

/// The uptime text for a tick count in milliseconds; days are not split out.
std::string UptimeText(std::uint32_t ticks);

/// The named text shortcuts of the drop-down, made for one call and released.
class CTextShortcut {
  public:
    /// `list` is the drop-down that FillCombo fills; it may be null for every other call.
    explicit CTextShortcut(win::ComboBox* list = nullptr) noexcept : list_(list) {}

    /// Any text that the object's user wants to keep with it.
    std::string FileList;

    // Shell links are read by sys::ReadLinkTarget; here there is nothing to do.

    /// Does nothing.
    void DeleteShortcut() {}
    /// Does nothing.
    void CreateShortcut() {}
    /// Does nothing.
    void ResolveShortcut() {}

    /// The names of a section in file order, joined by "|"; "" for an empty or missing section.
    /// Throws InvalidArgumentError for an entry without "=".
    static std::string CreateShortcutString(const std::string& section);

    /// Fills the drop-down anew; what the user has typed stays. False, and the list as it was, when the
    /// configuration file could not be read.
    bool FillCombo();

    /// Opens the text shortcut of this name; a name that is not stored goes to the URL handler as it stands.
    /// Nothing happens when the configuration file could not be read.
    static FireResult FireShortcut(const std::string& name);

    /// Starts the default mail client, minimised; nothing happens without one (HKEY_LOCAL_MACHINE).
    static void LauchMail();

    /// How long Windows has been running (GetTickCount).
    static std::string HowLong();

  private:
    win::ComboBox* list_;
};

}  // namespace model
