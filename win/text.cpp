#include "win/text.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <map>
#include <utility>

#include "win/errors.h"
#include "win/handles.h"

namespace win {
namespace {

/// The message font by dots per inch and the text's size in percent, as it was when it was asked for.
std::map<std::pair<int, int>, HFONT> g_fonts;

bool IsSame(const LOGFONTW& one, const LOGFONTW& other) noexcept {
    return std::wcscmp(one.lfFaceName, other.lfFaceName) == 0 &&
           std::memcmp(&one, &other, offsetof(LOGFONTW, lfFaceName)) == 0;
}

/// A font is made once for each description and kept: after a change the former one is still selected here
/// and there, and the user may come back to it.
HFONT FontOf(const LOGFONTW& description) {
    static std::vector<std::pair<LOGFONTW, Font>> fonts;
    for (const auto& [made, font] : fonts)
        if (IsSame(made, description)) return font.Get();
    Font font(CreateFontIndirectW(&description));
    if (!font) return nullptr;
    return fonts.emplace_back(description, std::move(font)).second.Get();
}

}  // namespace

std::wstring ToWide(std::string_view text) {
    if (text.empty()) return {};
    const int length = static_cast<int>(text.size());
    const int wide = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
    std::wstring result(static_cast<size_t>(std::max(0, wide)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), length, result.data(), wide);
    return result;
}

std::string ToBytes(std::wstring_view text) {
    if (text.empty()) return {};
    const int length = static_cast<int>(text.size());
    const int bytes = WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<size_t>(std::max(0, bytes)), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, result.data(), bytes, nullptr, nullptr);
    return result;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    const std::wstring left = ToWide(a);
    const std::wstring right = ToWide(b);
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

std::wstring UpperCase(std::wstring text) {
    CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

std::wstring UpperCase(std::string_view text) { return UpperCase(ToWide(text)); }

std::string Before(std::string_view text, char separator) {
    return std::string(text.substr(0, text.find(separator)));
}

std::string After(std::string_view text, char separator) {
    const size_t at = text.find(separator);
    return at == std::string_view::npos ? std::string() : std::string(text.substr(at + 1));
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (size_t at = text.find(separator); at != std::string_view::npos; at = text.find(separator, start)) {
        pieces.emplace_back(text.substr(start, at - start));
        start = at + 1;
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

std::string Join(const std::vector<std::string>& pieces, char separator) {
    std::string text;
    for (const std::string& piece : pieces) {
        if (&piece != pieces.data()) text += separator;
        text += piece;
    }
    return text;
}

std::string WindowText(HWND window) {
    std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return ToBytes(text);
}

void SetText(HWND window, std::string_view text) { SetWindowTextW(window, ToWide(text).c_str()); }

void FillBox(HWND box, std::string_view text) {
    if (SetWindowTextW(box, ToWide(text).c_str()) == 0)
        throw RuntimeError("Windows error " + std::to_string(GetLastError()) + " keeps \"" +
                           std::string(text) + "\" out of its box");
}

std::wstring WithPlainAmpersands(std::string_view text) {
    std::wstring plain;
    for (const wchar_t character : ToWide(text)) {
        if (character == L'&') plain += L'&';
        plain += character;
    }
    return plain;
}

int DrawPlainText(HDC dc, std::string_view text, RECT& rect, UINT format) {
    // A single ampersand would underline the character after it.
    std::wstring wide = (format & DT_NOPREFIX) == 0 ? WithPlainAmpersands(text) : ToWide(text);
    return DrawTextExW(dc, wide.data(), static_cast<int>(wide.size()), &rect, format, nullptr);
}

int TextWidth(HDC dc, std::string_view text) {
    const std::wstring wide = ToWide(text);
    SIZE size{};
    GetTextExtentPoint32W(dc, wide.data(), static_cast<int>(wide.size()), &size);
    return size.cx;
}

int LineHeight(HDC dc) noexcept {
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    return metrics.tmHeight;
}

HFONT MessageFont(const Scale& scale) {
    HFONT& font = g_fonts[{scale.Dpi(), scale.TextPercent()}];
    if (font == nullptr) {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0,
                                   static_cast<UINT>(scale.Dpi()));
        // It has the size of the system's text, of which a small screen may not have all.
        if (scale.TextPercent() < TextPercent())
            metrics.lfMessageFont.lfHeight =
                MulDiv(metrics.lfMessageFont.lfHeight, scale.TextPercent(), TextPercent());
        font = FontOf(metrics.lfMessageFont);
    }
    return font;
}

void ForgetFonts() noexcept { g_fonts.clear(); }

}  // namespace win
