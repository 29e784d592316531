#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace win {

/// An item of a list that contains a text.
struct FoundItem {
    std::wstring item;  ///< the whole item as it is spelled
    size_t at = 0;      ///< where the text begins in it, in UTF-16 units
};

/// An editable drop-down list. Its parent owns the window; this object talks to it.
class ComboBox {
  public:
    /// Creates the control on `parent`, in client pixels and with the font of its scale; the height is that
    /// of the list when it is open. Throws RuntimeError when Windows refuses.
    void CreateOn(HWND parent, int id, RECT place);

    /// Puts the control elsewhere and gives it the font of the scale that its parent has by now.
    void Rescale(RECT place);

    /// Makes the closed control so many pixels high (CB_SETITEMHEIGHT). A font that it is given later brings
    /// its own height.
    void SetHeight(int height);

    /// The control's window; null before CreateOn.
    [[nodiscard]] HWND Handle() const noexcept { return handle_; }

    /// The edit field inside the control.
    [[nodiscard]] HWND Edit() const noexcept { return edit_; }

    /// True while the list is open.
    [[nodiscard]] bool IsOpen() const noexcept;

    /// Replaces all items, in the order given. The text in the edit field stays, with its selection.
    void SetItems(const std::vector<std::string>& items);

    /// All items, in order.
    [[nodiscard]] std::vector<std::string> Items() const;

    /// The first item that contains the text ignoring case, leaving out items spelled `except`; no item
    /// contains an empty text.
    [[nodiscard]] std::optional<FoundItem> FindContaining(std::wstring_view text,
                                                          std::wstring_view except = {}) const;

    /// True when an item is this text, ignoring case.
    [[nodiscard]] bool Has(std::wstring_view text) const;

    /// Closes an open list; the item that is marked in it, if any, comes into the edit field.
    void TakeMarked();

    /// The text in the edit field.
    [[nodiscard]] std::string Text() const;

    /// Replaces the text in the edit field.
    void SetText(const std::string& text);

    /// Selects nothing and puts the caret at the end of the text.
    void ClearSelection() { SelectFrom(WindowTextLength()); }

    /// Selects from a character to the end of the text and puts the caret there.
    void SelectFrom(size_t start);

    /// True when nothing is selected and the caret stands at the end of the text.
    [[nodiscard]] bool CaretIsAtEnd() const;

  private:
    [[nodiscard]] size_t WindowTextLength() const;

    HWND handle_ = nullptr;
    HWND edit_ = nullptr;
    HWND list_ = nullptr;
    // All items, each ended by a NUL, and the same in upper case: searched as one text.
    std::wstring items_;
    std::wstring upperItems_;
};

}  // namespace win
