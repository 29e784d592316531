#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

namespace app {

/// A key with the modifier keys that are pressed with it, as RegisterHotKey takes them.
struct KeyCombination {
    UINT modifiers = 0;  ///< MOD_ flags
    UINT key = 0;        ///< a virtual-key code

    bool operator==(const KeyCombination&) const = default;
};

/// The combination of a hot-key control's word (HKM_GETHOTKEY). No value without a key, and none without CTRL
/// or ALT, because such a key would be lost for typing everywhere.
std::optional<KeyCombination> CombinationOf(std::uint16_t word);

/// The key combination that reaches the main window from wherever the user is (RegisterHotKey).
class HotKey {
  public:
    /// Takes the window that gets WM_HOTKEY.
    void Attach(HWND window) noexcept { window_ = window; }

    /// Replaces the combination by that of a hot-key control's word; a word that is no combination leaves
    /// none. False when another program has it: then the former one stays.
    bool Set(std::uint16_t word);

    /// True when a WM_HOTKEY with this identifier (its wParam) is meant.
    [[nodiscard]] bool IsMine(WPARAM id) const noexcept {
        return combination_ && static_cast<int>(id) == id_;
    }

  private:
    HWND window_ = nullptr;
    // The new combination is taken before the former one is let go, so two identifiers take turns.
    int id_ = 1;
    std::optional<KeyCombination> combination_;
};

}  // namespace app
