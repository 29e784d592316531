#pragma once

#include <string>

namespace model {

/// How many tabs there are, and how many buttons each shows.
constexpr int kTabCount = 6;
constexpr int kButtonCount = 9;

/// Where a record belongs: a button of a tab, or the tab itself.
struct ButtonPlace {
    int tab = 1;   ///< 1 to 6
    int slot = 1;  ///< 1 to 9; 0 for the tab's own record

    /// The place that a key names. Throws SubscriptError for a key outside "10" to "69", OverflowError for
    /// one whose number does not fit 32 bits.
    static ButtonPlace Parse(const std::string& key);

    /// The key of the place's record: "11" to "69", "10" to "60" for a tab.
    [[nodiscard]] std::string Key() const { return std::to_string(tab) + std::to_string(slot); }

    friend bool operator==(const ButtonPlace&, const ButtonPlace&) = default;
};

}  // namespace model
