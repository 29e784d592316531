#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

namespace win {

/// A copy of a DIALOGEX template with another font, whose size is in points; the dialog grows and shrinks
/// with it, because its units are the font's. Empty when the bytes are no such template.
std::vector<WORD> WithFont(const WORD* dialogTemplate, size_t words, const std::wstring& face, WORD points,
                           WORD weight);

/// A dialog's template with the size of its text, in points.
struct SizedTemplate {
    std::vector<WORD> words;  ///< empty for none
    int points = 0;           ///< of the template's font
    int wholePoints = 0;      ///< of the font as the system has it
};

/// A template of this module's resources with the system's message font, in the size of the system's text.
/// Where the dialog's client area would not fit into `room` (pixels of a screen with `dpi` dots per inch)
/// then, the text is as much smaller as it has to be. Empty when there is no such resource or Windows does
/// not tell the font.
SizedTemplate TemplateInMessageFont(int id, SIZE room, int dpi);

}  // namespace win
