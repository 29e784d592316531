#include "win/dialog_template.h"

#include <cstdlib>
#include <span>
#include <string_view>

#include "win/handles.h"
#include "win/scale.h"
#include "win/window.h"

namespace win {
namespace {

constexpr int kDialogType = 5;  // RT_DIALOG, which has no wide form of its own

// In words. DLGTEMPLATEEX is declared nowhere: version and signature, help identifier, extended style, style,
// number of controls, place and size; then menu, class and caption, each of a length of its own.
constexpr size_t kSignature = 1;
constexpr size_t kStyle = 6;
constexpr size_t kFixedPart = 13;
constexpr size_t kClientWidth = 11;
constexpr size_t kClientHeight = 12;
constexpr WORD kExtended = 0xFFFF;
constexpr size_t kBeforeFace = 3;  // size, weight, and italic with character set

/// The place behind a menu, a class or a text, which is nothing, a number, or characters up to a zero.
size_t SkipName(std::span<const WORD> words, size_t at) {
    if (at < words.size() && words[at] == 0xFFFF) return at + 2;
    while (at < words.size() && words[at] != 0)
        ++at;
    return at + 1;
}

constexpr int kPointsPerInch = 72;
/// No text is made smaller than this to let a dialog fit.
constexpr int kSmallestPoints = 8;

/// The size that a client area of so many dialog units has in a font: Windows takes a quarter of the mean
/// width of its letters and an eighth of its height for a unit.
SIZE PixelsOf(SIZE units, LOGFONTW font, int points, int dpi) {
    font.lfHeight = -MulDiv(points, dpi, kPointsPerInch);
    const Font made(CreateFontIndirectW(&font));
    const WindowDc screen(nullptr);
    const Selection selected(screen.Get(), made.Get());
    constexpr std::wstring_view kLetters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr int kAlphabet = 26;
    SIZE extent{};
    GetTextExtentPoint32W(screen.Get(), kLetters.data(), static_cast<int>(kLetters.size()), &extent);
    return {MulDiv(units.cx, static_cast<int>(extent.cx / kAlphabet + 1) / 2, 4),
            MulDiv(units.cy, static_cast<int>(extent.cy), 8)};
}

size_t Aligned(size_t words) { return (words + 1) / 2 * 2; }

}  // namespace

std::vector<WORD> WithFont(const WORD* dialogTemplate, size_t words, const std::wstring& face, WORD points,
                           WORD weight) {
    const std::span<const WORD> all(dialogTemplate, words);
    if (all.size() < kFixedPart || all[kSignature] != kExtended || (all[kStyle] & DS_SETFONT) == 0) return {};
    size_t at = kFixedPart;
    for (int name = 0; name < 3; ++name)
        at = SkipName(all, at);
    const size_t behindFont = Aligned(SkipName(all, at + kBeforeFace));
    if (behindFont > all.size()) return {};

    std::vector<WORD> copy(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(at));
    copy.push_back(points);
    copy.push_back(weight);
    copy.push_back(MAKEWORD(FALSE, DEFAULT_CHARSET));
    copy.insert(copy.end(), face.begin(), face.end());
    copy.push_back(0);
    // The controls begin at a multiple of four bytes.
    copy.resize(Aligned(copy.size()));
    copy.insert(copy.end(), all.begin() + static_cast<std::ptrdiff_t>(behindFont), all.end());
    return copy;
}

SizedTemplate TemplateInMessageFont(int id, SIZE room, int dpi) {
    const HRSRC resource =
        FindResourceW(ModuleInstance(), MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(kDialogType));
    const HGLOBAL loaded = resource == nullptr ? nullptr : LoadResource(ModuleInstance(), resource);
    const auto* words = loaded == nullptr ? nullptr : static_cast<const WORD*>(LockResource(loaded));
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (words == nullptr ||
        SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, kPlainDpi) == FALSE)
        return {};
    const LOGFONTW& font = metrics.lfMessageFont;
    const size_t count = SizeofResource(ModuleInstance(), resource) / sizeof(WORD);
    if (count < kFixedPart) return {};
    const SIZE units{words[kClientWidth], words[kClientHeight]};
    const auto fits = [&](int points) {
        const SIZE size = PixelsOf(units, font, points, dpi);
        return size.cx <= room.cx && size.cy <= room.cy;
    };
    const int wholePoints = MulDiv(std::abs(static_cast<int>(font.lfHeight)), kPointsPerInch, kPlainDpi);
    int points = wholePoints;
    while (points > kSmallestPoints && !fits(points))
        --points;
    return {
        WithFont(words, count, font.lfFaceName, static_cast<WORD>(points), static_cast<WORD>(font.lfWeight)),
        points, wholePoints};
}

}  // namespace win
