#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

#include "model/button_records.h"
#include "win/handles.h"
#include "win/picture_box.h"

namespace model {

/// The name of a free button.
constexpr const char* kFreeName = "Empty";

/// Binds one button of the panel to what it launches: reads its record, checks the target, paints the face.
class CButtonShortcut {
  public:
    /// `context` is shared by all buttons; `refillList` fills the text-shortcut drop-down anew.
    CButtonShortcut(ButtonContext& context, std::function<void()> refillList);

    /// The box to draw on; setting it draws the edge. It must outlive this object.
    void SetParentButton(win::PictureBox* box);

    /// The picture that the face is drawn on; null for none.
    [[nodiscard]] win::PictureBox* ParentButton() const noexcept { return box_; }

    std::string Ttip;    ///< the tip text last built for the button
    std::string Switch;  ///< the command switch; "" for a group
    bool Group = false;  ///< the target is a list of members
    std::string
        FILETIME;  ///< when a file was last modified; "" for URLs and groups, a folder keeps the former
    std::string FileSize;  ///< the size of a file as text; "" for URLs and groups, a folder keeps the former
    std::int32_t FileIcon = 0;      ///< the icon's index inside the icon source
    std::string FilePath;           ///< the target, or the members of a group joined by "|"
    std::string Naziv = kFreeName;  ///< the shortcut's name

    /// True when the button holds no shortcut.
    [[nodiscard]] bool IsFree() const { return Naziv == kFreeName; }

    /// Loads everything for the button with this key and paints it. A target that is gone frees the button.
    /// Throws SubscriptError for a key outside "10" to "69".
    void RefreshButton(const std::string& key);

    /// Stores a single shortcut for the current button, under the name for its target. Throws SubscriptError
    /// for a current key outside "10" to "69".
    void SaveShortcut(const std::string& path, std::int32_t icon);

    /// Stores a group for the current button under the button's own key. Throws as above.
    void SaveGroup(const std::string& members);

    /// Frees the button; its shortcut stays in the list. `silent` leaves the face as it is.
    /// Throws SubscriptError for a key outside "10" to "69".
    void DeleteShortcut(const std::string& key, bool silent);

    /// Paints icon, caption and mark from the present values.
    void AddFile();

    /// The text before the first `delimiter`, or all of it; an empty delimiter stands for the NUL character.
    static std::string StripString(const std::string& text, const std::string& delimiter);

    /// Draws the raised edge.
    void DrawButton();

  private:
    void LoadTarget(const std::string& key, const std::string& name, const std::string& value);
    void DrawCaption(const std::string& caption, const std::string& mark);

    ButtonContext& context_;
    std::function<void()> refillList_;
    win::PictureBox* box_ = nullptr;
    win::Icon icon_;
};

}  // namespace model
