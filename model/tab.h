#pragma once

#include <string>

#include "sys/tooltip.h"
#include "win/picture_box.h"

namespace model {

/// One tab: its label and description, the picture of its header and its tip.
class clsTab {
  public:
    /// `number` is 1 to 6.
    explicit clsTab(int number) noexcept : number_(number) {}

    /// Takes the tab's record, label "|" description, and paints the label; an empty record is ignored.
    /// Throws InvalidArgumentError for a record without "|".
    void INIstring(const std::string& record);

    /// The header picture; it must outlive this object.
    void SetParentTab(win::PictureBox* header) noexcept { header_ = header; }

    /// The header that the label is drawn on; null for none.
    [[nodiscard]] win::PictureBox* ParentTab() const noexcept { return header_; }

    std::string Description;  ///< may hold "|"
    std::string Label;        ///< at most 7 characters

    /// Makes the tip anew: the description or the contents, as Settings.TabDescriptions says; `suppress`
    /// leaves only the title.
    void ShowTip(bool suppress);

    /// What the tab's nine buttons hold, one numbered line each, read from the configuration file.
    [[nodiscard]] std::string Content() const;

    /// Paints the label on the header.
    void DrawTabText();

    /// The tip as last built.
    [[nodiscard]] const sys::clsToolTip& Tip() const noexcept { return tip_; }

  private:
    int number_;
    win::PictureBox* header_ = nullptr;
    sys::clsToolTip tip_;
};

}  // namespace model
