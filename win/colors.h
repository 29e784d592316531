#pragma once

#include <windows.h>

#include <cstdint>

namespace win {

/// The colours that the program chooses itself, by what they are for. All others are the system's.
enum class Color : std::uint8_t {
    kLabel,      ///< a label on the colour of buttons
    kAccent,     ///< what marks the thing that is shown
    kEvenRow,    ///< behind every other row of a list, the first included
    kOddRow,     ///< behind the rows between them
    kQuietBar,   ///< behind the selected row while something else has the focus
    kRemark,     ///< a row's second line
    kLink,       ///< a link on the colour of dialogs
    kTipGround,  ///< behind the text of a tip
    kWarning,    ///< a frame around what is warned of
    kTaken,      ///< a name that exists already
    kFree,       ///< a name that does not
};

/// The colour to use now: the program's own one, or, while the user has a contrast theme, the system's colour
/// that has its part there.
COLORREF ColorOf(Color color) noexcept;

/// The system's colour (COLOR_) that takes a colour's place under a contrast theme.
int ContrastColor(Color color) noexcept;

/// The program's own colour, whatever theme there is.
COLORREF PlainColor(Color color) noexcept;

/// True while the user has a contrast theme (SPI_GETHIGHCONTRAST) or other colours with dark ground. Asked
/// once, and again after ForgetColors.
bool ContrastTheme() noexcept;

/// To be called when the theme may have changed: it is asked for anew.
void ForgetColors() noexcept;

/// Draws a frame of so many pixels in a colour of the system (COLOR_) and shrinks the rectangle to what is
/// left inside it.
void DrawSystemFrame(HDC dc, RECT& rect, int width, int color) noexcept;

/// True for a ground that dark strokes are hard to see on.
bool IsDark(COLORREF ground) noexcept;

}  // namespace win
