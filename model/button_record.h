#pragma once

#include <cstdint>
#include <string>

#include "model/button_place.h"

namespace model {

/// What a used button's record says: a shortcut's name, "|" and an icon's index.
struct ButtonRecord {
    std::string name;       ///< the shortcut's
    std::int32_t icon = 0;  ///< inside the file that the icon comes from

    /// Reads the record of a place. The name is the text before the first "|", or all of it; the record
    /// "Group" names the group that is stored under the place's own key. The icon is the number after the
    /// last "|", 0 where there is none.
    static ButtonRecord Parse(const ButtonPlace& place, const std::string& text);

    /// The record as it is stored.
    [[nodiscard]] std::string Text() const { return name + "|" + std::to_string(icon); }
};

/// The name in the record of a key, as above, also where the key is not that of a button.
std::string RecordName(const std::string& key, const std::string& recordText);

/// A record's text with another name; what stands behind the name is kept byte for byte.
std::string WithName(const std::string& recordText, const std::string& name);

}  // namespace model
