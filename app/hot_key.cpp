#include "app/hot_key.h"

#include <commctrl.h>

namespace app {

std::optional<KeyCombination> CombinationOf(std::uint16_t word) {
    const UINT key = LOBYTE(word);
    const UINT held = HIBYTE(word);
    if (key == 0 || (held & (HOTKEYF_CONTROL | HOTKEYF_ALT)) == 0) return std::nullopt;
    UINT modifiers = 0;
    if ((held & HOTKEYF_SHIFT) != 0) modifiers |= MOD_SHIFT;
    if ((held & HOTKEYF_CONTROL) != 0) modifiers |= MOD_CONTROL;
    if ((held & HOTKEYF_ALT) != 0) modifiers |= MOD_ALT;
    return KeyCombination{modifiers, key};
}

bool HotKey::Set(std::uint16_t word) {
    const std::optional<KeyCombination> wanted = CombinationOf(word);
    if (wanted == combination_) return true;
    const int id = 3 - id_;
    if (wanted && RegisterHotKey(window_, id, wanted->modifiers | MOD_NOREPEAT, wanted->key) == 0)
        return false;
    if (combination_) UnregisterHotKey(window_, id_);
    id_ = id;
    combination_ = wanted;
    return true;
}

}  // namespace app
