#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "sys/target_state.h"
#include "win/colors.h"
#include "win/handles.h"
#include "win/scale.h"
#include "win/scroll_bar.h"
#include "win/window.h"

namespace dialogs {

/// One record that a list shows.
struct Row {
    std::string name;  ///< the first line: the organiser's `lT`, the group editor's `lb1`
    std::string
        target;  ///< a path, a URL or several joined by "|": the second line `l1`, and what the icon is of
    std::string tag;  ///< the user's own mark
};

/// Where a list puts things, in layout pixels. Offsets are from a row's left and top.
struct RowLook {
    int firstTop = 0;       ///< top of row 0
    int height = 0;         ///< of each row
    int gap = 0;            ///< between two rows
    int bottom = 0;         ///< space below the last row
    POINT icon{};           ///< of the 16 x 16 icon, the box `p1`
    POINT name{};           ///< of the first line of text
    int targetTop = 0;      ///< of the second line, below the first; 0 for none
    int highlightLeft = 0;  ///< of `Hlight`, the bar behind the selected row
    bool framed = false;    ///< an edge around each row, the box `p2`
    int smallStep = 0;      ///< of the scroll bar's arrows
    int largeStep = 0;      ///< of the scroll bar's shaft
};

/// The look at a scale: all lengths in its pixels.
RowLook Scaled(const RowLook& look, const win::Scale& scale);

/// A scrollable list of painted rows: one window, however many rows there are. It is the content of a frame
/// and moves inside it. A row's icon is fetched when the row is first seen.
class RowList : public win::Window {
  public:
    explicit RowList(const RowLook& look) : layout_(look), look_(look) {}

    /// Creates the list, empty, as the child `id` of its frame, at the scale of the dialog around it.
    /// `scrollBar` is a vertical scroll bar, whose WM_VSCROLL its own parent passes on to OnScroll.
    void CreateOn(HWND frame, HWND scrollBar, int id, const win::Scale& scale);

    /// Replaces all rows. Selection and scrolling stay where they are as far as there are rows.
    void Assign(std::vector<Row> rows);

    /// Puts a row behind the others and scrolls to it.
    void Add(Row row);

    [[nodiscard]] const std::vector<Row>& Rows() const noexcept { return rows_; }

    /// The number of the selected row; 0 in an empty list.
    [[nodiscard]] int Selected() const noexcept { return selected_; }

    /// The selected row; null in an empty list. Valid until the rows change.
    [[nodiscard]] const Row* SelectedRow() const noexcept;

    /// Selects a row, the nearest one for a number beyond the rows, and scrolls so that it is seen.
    void Select(int index);

    /// A row's place in the content.
    [[nodiscard]] RECT RowPlace(int index) const;

    /// The colour behind a row that is not selected.
    [[nodiscard]] COLORREF RowColor(int index) const;

    /// The same in the ordinary colours, whatever theme there is.
    [[nodiscard]] COLORREF PlainRowColor(int index) const;

    /// How far the list is scrolled, in pixels; the content's top is its negative.
    [[nodiscard]] int ScrollValue() const noexcept { return scroll_.Value(); }

    /// How far it can be scrolled: by as much as the content is higher than the frame, or 0.
    [[nodiscard]] int ScrollMaximum() const noexcept { return scroll_.Maximum(); }

    /// Scrolls to a value, or to the end nearest to it.
    void ScrollTo(int value);

    /// Acts on a code of the scroll bar (SB_LINEDOWN and its like).
    void OnScroll(int code);

    // Events; an empty one is ignored.
    /// A row was double-clicked.
    std::function<void()> onOpen;
    /// The Delete key was pressed while a row was selected; once for a held key.
    std::function<void()> onDelete;

  protected:
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    /// The place of an icon in the system's list of small icons, or, if those have another size than the
    /// rows' icons, an icon of the rows' size.
    struct ShellIcon {
        HANDLE list = nullptr;
        int index = 0;
        win::Icon own;
    };

    [[nodiscard]] ShellIcon FetchIcon(const std::string& target);
    void DrawShellIcon(HDC dc, const ShellIcon& icon, int left, int top) const;
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(rows_.size()); }
    [[nodiscard]] int Step() const noexcept { return look_.height + look_.gap; }
    [[nodiscard]] int ContentHeight() const noexcept;
    [[nodiscard]] int FrameHeight() const;
    [[nodiscard]] int RowAt(int contentY) const noexcept;
    void Layout();
    /// The scroll bar `Scr` has another value: the content's top becomes its negative.
    void Scr_Change();
    /// The same while its thumb is being dragged.
    void Scr_Scroll();
    void PlaceContent();
    void Reveal(int index);
    void TellName();
    /// The same, and what the list is, for screen readers.
    void TellScreenReader();
    void Repaint() const noexcept;
    bool OnKey(WPARAM key, bool repeated);
    /// False below the last row, where there is nothing to select.
    bool OnPress(int y);
    void OnPaint();
    void FetchIcons(int top, int bottom);
    void Print(HDC dc);
    void Draw(HDC dc, const RECT& part) const;
    void DrawRow(HDC dc, int index) const;
    void DrawLine(HDC dc, const std::string& text, int left, int top, int right) const;
    void DrawFocus(HDC dc) const;
    [[nodiscard]] RECT HighlightPlace(int index) const;
    [[nodiscard]] win::Color ColorBehind(int index) const noexcept;

    RowLook layout_;
    /// The same at the list's scale.
    RowLook look_;
    win::Scale scale_;
    HWND frame_ = nullptr;
    win::ScrollBar scroll_;
    std::vector<Row> rows_;
    /// The rows' icons, as far as they have been seen.
    std::vector<std::optional<ShellIcon>> icons_;
    /// What did not answer while icons were fetched for these rows.
    sys::SilentPlaces silent_;
    int selected_ = 0;
    bool told_ = false;
    /// How much higher the content is painted than the window stands, because Windows limits a window's
    /// height.
    int paintOffset_ = 0;
};

}  // namespace dialogs
