#include "win/colors.h"

#include <array>
#include <optional>

namespace win {
namespace {

struct Entry {
    Color color;
    COLORREF plain;
    int contrast;
};

constexpr std::array<Entry, 11> kColors{{
    {Color::kLabel, RGB(0x56, 0x56, 0x56), COLOR_BTNTEXT},
    {Color::kAccent, RGB(0x17, 0x78, 0x8A), COLOR_HIGHLIGHT},
    {Color::kEvenRow, RGB(0xFF, 0xFF, 0xFF), COLOR_WINDOW},
    {Color::kOddRow, RGB(0xF1, 0xF5, 0xF1), COLOR_WINDOW},
    {Color::kQuietBar, RGB(0xCF, 0xE3, 0xEC), COLOR_HIGHLIGHT},
    {Color::kRemark, RGB(0x60, 0x60, 0x60), COLOR_WINDOWTEXT},
    {Color::kLink, RGB(0x17, 0x66, 0x8A), COLOR_HOTLIGHT},
    {Color::kTipGround, RGB(0xDD, 0xE1, 0xDD), COLOR_INFOBK},
    {Color::kWarning, RGB(0xE0, 0x10, 0x10), COLOR_HIGHLIGHT},
    {Color::kTaken, RGB(0xFF, 0x00, 0x00), COLOR_WINDOWTEXT},
    {Color::kFree, RGB(0x00, 0x00, 0xFF), COLOR_WINDOWTEXT},
}};

constexpr bool InOrder() {
    for (size_t index = 0; index < kColors.size(); ++index)
        if (static_cast<size_t>(kColors.at(index).color) != index) return false;
    return true;
}
static_assert(InOrder());

const Entry& EntryOf(Color color) noexcept { return kColors[static_cast<size_t>(color)]; }

std::optional<bool> g_contrast;

/// The program's own colours are made for light ground.
bool HasDarkGround() noexcept {
    return IsDark(GetSysColor(COLOR_WINDOW)) || IsDark(GetSysColor(COLOR_BTNFACE));
}

bool AskContrast() noexcept {
    if (HasDarkGround()) return true;
    HIGHCONTRASTW record{};
    record.cbSize = sizeof record;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof record, &record, 0) != FALSE &&
           (record.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

}  // namespace

COLORREF ColorOf(Color color) noexcept {
    return ContrastTheme() ? GetSysColor(ContrastColor(color)) : PlainColor(color);
}

int ContrastColor(Color color) noexcept { return EntryOf(color).contrast; }

COLORREF PlainColor(Color color) noexcept { return EntryOf(color).plain; }

bool ContrastTheme() noexcept {
    if (!g_contrast) g_contrast = AskContrast();
    return *g_contrast;
}

void ForgetColors() noexcept { g_contrast.reset(); }

void DrawSystemFrame(HDC dc, RECT& rect, int width, int color) noexcept {
    for (int line = 0; line < width; ++line) {
        FrameRect(dc, &rect, GetSysColorBrush(color));
        InflateRect(&rect, -1, -1);
    }
}

bool IsDark(COLORREF ground) noexcept {
    // How bright a colour looks, in thousandths of white.
    const int brightness =
        (GetRValue(ground) * 299 + GetGValue(ground) * 587 + GetBValue(ground) * 114) / 255;
    return brightness < 500;
}

}  // namespace win
