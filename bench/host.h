#pragma once

#include "app/panel_layout.h"
#include "win/window.h"

namespace bench {

/// A window of the panel's size, shown at the screen's top, to put parts of the product on.
class Host : public win::Window {
  public:
    /// `left` in pixels.
    explicit Host(int left) {
        win::WindowOptions options;
        options.className = L"QuonBenchHost";
        options.style = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN;
        options.extendedStyle = WS_EX_TOOLWINDOW | WS_EX_TOPMOST;
        options.place = app::layout::At(left, 0, app::layout::kClientWidth, app::layout::kClientHeight);
        Create(options);
    }

  protected:
    std::optional<LRESULT> OnMessage(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) override {
        return std::nullopt;
    }
};

}  // namespace bench
