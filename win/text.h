#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "win/scale.h"

namespace win {

// Text is kept as bytes in the process code page: UTF-8 where the manifest is honoured, the system's
// code page elsewhere.

/// The wide form of a text (MultiByteToWideChar); bytes that are no character become U+FFFD.
std::wstring ToWide(std::string_view text);

/// The bytes of a wide text in the process code page (WideCharToMultiByte).
std::string ToBytes(std::wstring_view text);

/// True when both texts are the same ignoring case (CompareStringOrdinal).
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// The text in upper case, as the system sees it (CharUpperBuffW); it keeps its length.
std::wstring UpperCase(std::wstring text);

/// The wide form of a text in upper case.
std::wstring UpperCase(std::string_view text);

/// The part of `text` before the first `separator`, or all of it when there is none.
std::string Before(std::string_view text, char separator);

/// The part of `text` after the first `separator`; "" when there is none.
std::string After(std::string_view text, char separator);

/// The pieces between separators, empty ones kept; an empty text gives one empty piece.
std::vector<std::string> Split(std::string_view text, char separator);

/// The pieces joined by `separator`.
std::string Join(const std::vector<std::string>& pieces, char separator);

/// The text of a window, in full (GetWindowTextW).
std::string WindowText(HWND window);

/// Sets the text of a window (SetWindowTextW).
void SetText(HWND window, std::string_view text);

/// The same for a box whose text will be stored: throws RuntimeError when that failed, because what such a
/// box does not show would be lost.
void FillBox(HWND box, std::string_view text);

/// The wide form of a text with each "&" doubled, because Windows takes a single one for the mark of a
/// mnemonic.
std::wstring WithPlainAmpersands(std::string_view text);

/// DrawTextExW with the given DT_ flags. GDI does not honour the process code page, so nothing may be
/// drawn with the 8-bit form. "&" is drawn as itself. Returns the height of the text in pixels.
int DrawPlainText(HDC dc, std::string_view text, RECT& rect, UINT format);

/// The width of one line of text in the font that is selected, in pixels (GetTextExtentPoint32W).
int TextWidth(HDC dc, std::string_view text);

/// The height of one line of text in the font that is selected, in pixels (GetTextMetricsW).
int LineHeight(HDC dc) noexcept;

/// The system's message font at a scale (SystemParametersInfoForDpi), made once and owned here for the life
/// of the process. It has the size of the system's text already, or the scale's if that is smaller.
HFONT MessageFont(const Scale& scale = {});

/// To be called when the system's message font may have changed: it is asked for anew. Fonts that were handed
/// out before stay as they are.
void ForgetFonts() noexcept;

}  // namespace win
