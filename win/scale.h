#pragma once

#include <windows.h>

namespace win {

/// Windows' scale of 100 %, in dots per inch.
constexpr int kPlainDpi = 96;

/// Turns layout pixels, those of a screen with 96 dots per inch and text of the usual size, into the pixels
/// of a window. At that scale it changes nothing.
class Scale {
  public:
    /// 100 %.
    constexpr Scale() = default;

    /// `textPercent` is the size of the system's text: 100 is the usual one.
    constexpr explicit Scale(int dpi, int textPercent = 100) noexcept
        : dpi_(dpi), textPercent_(textPercent) {}

    /// The scale of the screen that a window is on (GetDpiForWindow), with the size of the system's text, but
    /// no more of it than FitTextTo allows there; without a window that of the primary screen.
    static Scale Of(HWND window) noexcept;

    /// The scale of windows on a screen that has so many dots per inch, with the size of the system's text as
    /// above.
    static Scale On(HMONITOR screen, int dpi) noexcept;

    /// Dots per inch, without the text's size.
    [[nodiscard]] constexpr int Dpi() const noexcept { return dpi_; }

    /// The size of the system's text that the scale was made with, in percent.
    [[nodiscard]] constexpr int TextPercent() const noexcept { return textPercent_; }

    /// A length, rounded to the nearest; a length that is not 0 stays at least one pixel.
    [[nodiscard]] constexpr int operator()(int length) const noexcept {
        const int scaled = Rounded(static_cast<long long>(length) * dpi_ * textPercent_, kPlain);
        if (scaled != 0 || length == 0) return scaled;
        return length > 0 ? 1 : -1;
    }

    /// A point, or a size.
    [[nodiscard]] constexpr POINT operator()(POINT point) const noexcept {
        return {(*this)(static_cast<int>(point.x)), (*this)(static_cast<int>(point.y))};
    }

    /// A rectangle, edge by edge: what touches in the layout touches in the window.
    [[nodiscard]] constexpr RECT operator()(RECT rect) const noexcept {
        return {(*this)(static_cast<int>(rect.left)), (*this)(static_cast<int>(rect.top)),
                (*this)(static_cast<int>(rect.right)), (*this)(static_cast<int>(rect.bottom))};
    }

    /// The pixels of a length in twips, 15 of which are a layout pixel.
    [[nodiscard]] constexpr int FromTwips(int twips) const noexcept {
        return Rounded(static_cast<long long>(twips) * dpi_ * textPercent_, kPlain * kTwipsPerLayoutPixel);
    }

    /// The twips of a length in pixels.
    [[nodiscard]] constexpr int ToTwips(int pixels) const noexcept {
        return Rounded(static_cast<long long>(pixels) * kPlain * kTwipsPerLayoutPixel,
                       static_cast<long long>(dpi_) * textPercent_);
    }

    /// The layout pixels of a length in pixels.
    [[nodiscard]] constexpr int ToLayout(int pixels) const noexcept {
        return Rounded(static_cast<long long>(pixels) * kPlain, static_cast<long long>(dpi_) * textPercent_);
    }

    constexpr bool operator==(const Scale&) const = default;

  private:
    static constexpr long long kPlain = kPlainDpi * 100LL;
    static constexpr long long kTwipsPerLayoutPixel = 15;

    static constexpr int Rounded(long long dividend, long long divisor) noexcept {
        const long long half = divisor / 2;
        return static_cast<int>((dividend >= 0 ? dividend + half : dividend - half) / divisor);
    }

    int dpi_ = kPlainDpi;
    int textPercent_ = 100;
};

/// The size of the system's text in percent of the usual one, 100 to 225: that of the message font
/// (SystemParametersInfoForDpi). Asked once, and again after ForgetTextSize.
int TextPercent() noexcept;

/// The height in layout pixels of what must not become higher than a screen for the sake of larger text: the
/// client area of a window with a caption. 0, as at the beginning: nothing.
void FitTextTo(int layoutHeight) noexcept;

/// To be called when the size of the system's text may have changed: it is asked for anew.
void ForgetTextSize() noexcept;

/// The whole of the screen that the window, or most of it, is on (MonitorFromWindow).
RECT ScreenOf(HWND window) noexcept;

/// The dots per inch of the primary screen as it is now (GetDpiForMonitor); those it had when the user signed
/// in where Windows does not tell.
int PrimaryDpi() noexcept;

/// The part of that screen that windows may take up: without the taskbar.
RECT WorkAreaOf(HWND window) noexcept;

/// Makes a client rectangle the rectangle of the whole window, for its own style and scale, without a menu
/// (AdjustWindowRectExForDpi). Where Windows refuses, it stays as it is.
void AddFrame(RECT& rect, HWND window) noexcept;

/// The same before there is a window.
void AddFrame(RECT& rect, DWORD style, DWORD extendedStyle, int dpi) noexcept;

}  // namespace win
