#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/button_records.h"
#include "sys/target_state.h"
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
        FILETIME;  ///< when the file was last modified; "" for URLs and groups; unchanged for a folder
    std::string FileSize;  ///< the size of the file as text; "" for URLs and groups; unchanged for a folder
    std::int32_t FileIcon = 0;      ///< the icon's index inside the icon source
    std::string FilePath;           ///< the target, or the members of a group joined by "|"
    std::string Naziv = kFreeName;  ///< the shortcut's name

    /// True when the button holds no shortcut.
    [[nodiscard]] bool IsFree() const { return Naziv == kFreeName; }

    /// True when the button holds a shortcut of which only the name is known: its target could not be read.
    [[nodiscard]] bool IsUnread() const { return !IsFree() && FilePath.empty(); }

    /// False when the server or drive of the target did not answer at the last refresh: asking it again means
    /// waiting again.
    [[nodiscard]] bool Answers() const noexcept { return answers_; }

    /// Loads everything for the button with this key and paints it. A button whose target is gone is freed,
    /// but not one whose target cannot be checked because its server or drive does not answer. Where the
    /// configuration file could not be read, the record stays, and ButtonContext::onUnread is called. A
    /// record that another program has changed since it was read is taken from the file instead of being
    /// freed. Throws SubscriptError for a key outside "10" to "69".
    void RefreshButton(const std::string& key);

    /// A button and the key of the record that it is to show.
    struct Refresh {
        CButtonShortcut* button;
        std::string key;
    };
    /// Refreshes several buttons of the same panel: reads all of them, then stores what has to be freed, in
    /// one unit, and paints at the end. A server that does not answer is waited for once.
    static void RefreshButtons(const std::vector<Refresh>& refreshes);

    /// Stores a single shortcut for the current button, under the name for its target; nothing happens when
    /// it cannot be stored. Throws SubscriptError for a current key outside "10" to "69".
    void SaveShortcut(const std::string& path, std::int32_t icon);

    /// Stores a group for the current button under the button's own key. Throws as above.
    void SaveGroup(const std::string& members);

    /// Frees the button; its shortcut stays in the list. `silent` leaves the face as it is. Nothing happens
    /// when it cannot be stored that the button is free. Throws SubscriptError for a key outside "10" to
    /// "69".
    void DeleteShortcut(const std::string& key, bool silent);

    /// Makes the button a free one after that has been stored; `silent` leaves the face as it is.
    void BecomeFree(bool silent);

    /// Paints icon, caption and mark from the present values.
    void AddFile();

    /// The text before the first `delimiter`, or all of it; an empty delimiter stands for the NUL character.
    static std::string StripString(const std::string& text, const std::string& delimiter);

    /// Draws the raised edge.
    void DrawButton();

    /// Paints the whole face anew from the present values, after the picture has been replaced. Nothing is
    /// stored.
    void DrawFace();

  private:
    struct Reading;

    [[nodiscard]] Reading Read(const std::string& key, sys::SilentPlaces& silent) const;
    bool TakeForeignRecord(Reading& reading) const;
    void Take(const Reading& reading, bool stored);
    void TakeUnread(const Reading& reading);
    void DrawFreeFace();
    void DrawCaption(const std::string& caption, const std::string& mark);

    ButtonContext& context_;
    std::function<void()> refillList_;
    win::PictureBox* box_ = nullptr;
    win::Icon icon_;
    int iconSize_ = 0;  // pixels
    // The target's server or drive answers, so that its icon can be looked for there.
    bool answers_ = true;
    // Which refresh is the last one: painting lets messages run, and with them further refreshes.
    int refresh_ = 0;
};

}  // namespace model
