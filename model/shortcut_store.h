#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "config/file_state.h"
#include "model/button_place.h"
#include "model/button_records.h"

namespace model {

/// A shortcut as it is stored.
struct StoredShortcut {
    std::string name;
    std::string target;  ///< a path or URL; a group's members joined by "|"
};

/// The owner of what is stored of shortcuts: the targets in section "Cuts", their command switches in section
/// "Switch", and, where they change together with these, the records of buttons. Each change is one unit:
/// either it is stored whole and then stands in the table of records too, or nothing has changed and the
/// answer is false. Names and targets are taken as they are given; see model/storable_name.h for what can be
/// stored.
class ShortcutStore {
  public:
    /// The table follows what is stored of buttons; it must outlive this object.
    explicit ShortcutStore(ButtonRecords& records) noexcept : records_(records) {}

    // Looking up. No value comes back when the file could not be read, which says nothing about its content.

    /// The target of this name, at most its first 554 bytes; "" when there is none.
    static std::optional<std::string> Target(const std::string& name);

    /// As Target, but "" only when the file was open to us while it was read: it can be acted upon.
    static std::optional<std::string> TargetForCertain(const std::string& name);

    /// The target of this name in full, for whoever writes it back. `read` is what a button or Target has of
    /// it; when the stored one begins like that and is too long to be read at once, the stored one is the
    /// answer, else `read` itself. No value either when the whole lies beyond what can be read of a section.
    static std::optional<std::string> WholeTarget(const std::string& name, const std::string& read);

    /// The command switch of this name; "" when there is none.
    static std::optional<std::string> Switch(const std::string& name);

    /// All shortcuts in their order; lines without "=" are none.
    static std::optional<std::vector<StoredShortcut>> Shortcuts();

    /// The entries of all shortcuts as ReadIniSection gives them.
    static std::optional<std::string> Entries();

    // Changing.

    /// Stores a target under a name.
    bool Put(const std::string& name, const std::string& target);

    /// Stores a command switch, which is made storable.
    bool PutSwitch(const std::string& name, const std::string& commandSwitch);

    /// Removes a command switch; nothing happens without one.
    bool RemoveSwitch(const std::string& name);

    /// Replaces a record of "Buttons".
    bool PutRecord(const ButtonPlace& place, const std::string& record);

    /// A shortcut on its way to a button.
    struct Assignment {
        ButtonPlace place;
        std::string name;
        std::string target;
        std::string commandSwitch;  ///< "" leaves the one that is stored
        std::optional<ButtonPlace> source =
            std::nullopt;  ///< the button that it is moved from, which is freed first
    };
    /// Stores a shortcut and binds a button to it; its icon begins anew.
    bool Assign(const Assignment& assignment);

    /// Stores a target, and a button's record with the shortcut's name, but with the path in the table.
    bool PutShortcut(const ButtonPlace& place, const std::string& path, std::int32_t icon);

    /// Stores a group under the key of its button.
    bool PutGroup(const ButtonPlace& place, const std::string& members);

    /// A shortcut that gets another name.
    struct Renaming {
        /// How the buttons' records are written.
        enum class Records : std::uint8_t {
            kLeft,          ///< not at all
            kAfterTarget,   ///< behind the target
            kBeforeTarget,  ///< before the former name goes
            kAsGroup        ///< before the former name goes; emptied first, and their icons begin anew
        };
        std::string former;
        std::string name;
        std::string target;
        Records records = Records::kBeforeTarget;
        std::optional<ButtonPlace> button = std::nullopt;  ///< a button that gets the name in any case
        std::int32_t icon = 0;                             ///< the index in its record
    };
    /// Moves a shortcut to another name: its target, its switch and the records of all buttons that carry it.
    /// A switch that the new name had before goes.
    bool Rename(const Renaming& renaming);

    /// Removes a target, and frees a button before that. The switch stays.
    bool Remove(const std::string& name, const std::optional<ButtonPlace>& button);

    /// Frees a button and removes its shortcut, with the shortcut's switch where it has one.
    bool RemoveWithButton(const ButtonPlace& place, const std::string& name, bool hasSwitch);

    /// A button that is freed while its shortcut stays.
    struct Freeing {
        ButtonPlace place;
        bool isFree = false;           ///< it is free already; the file is written only if it does not say so
        bool hadSwitch = false;        ///< a switch stored under the name of free buttons goes too
        std::string danglingShortcut;  ///< the name of a shortcut that goes as well; "" for none
    };
    /// Frees buttons, all of them or none. `onlyFor` is the state of the file in which it was read that they
    /// are to be freed: in another one they are not. Nothing where that was not read there.
    bool Free(const std::vector<Freeing>& buttons,
              const std::optional<config::FileState>& onlyFor = std::nullopt);

    /// Makes a button follow its file: its record gets the path for a name. Where the file has arrived, the
    /// path becomes a shortcut with the former one's switch, and the former shortcut leads there too. Where
    /// it has not, the path becomes a shortcut that leads to where the file is, unless there is one of that
    /// name. When the path cannot be a name, the record stays as it is. A path that could not be read back
    /// whole changes nothing, and the answer is false.
    bool Follow(const MovedFile& file);

  private:
    ButtonRecords& records_;
};

}  // namespace model
