#include "dialogs/message_layout.h"

#include <algorithm>

namespace dialogs {
namespace {

constexpr int kMargin = 390;
constexpr int kTop = 300;
constexpr int kGap = 225;
constexpr int kButtonWidth = 1335;
constexpr int kButtonHeight = 390;
constexpr int kInputHeight = 345;
constexpr int kBelowRow = 250;
// With buttons of this width both the two- and the three-button row stand centred in it.
constexpr int kClientWidth = 5085;

std::vector<int> ButtonLefts(int buttons) {
    switch (std::min(buttons, 3)) {
        case 0: return {};
        case 1: return {(kClientWidth - kButtonWidth) / 2};
        case 2: return {570, 3180};
        default: return {390, 1875, 3360};
    }
}

}  // namespace

int MessageTextWidth() { return kClientWidth - 2 * kMargin; }

MessageLayout LayOutMessage(int textHeight, int buttons, bool inBox) {
    MessageLayout layout;
    layout.clientWidth = kClientWidth;
    layout.text = {kMargin, kTop, MessageTextWidth(), textHeight};
    int rowTop = kTop + textHeight + kGap;
    if (inBox) {
        layout.input = {kMargin, rowTop - kGap / 2, MessageTextWidth(), kInputHeight};
        rowTop = layout.input.top + kInputHeight + kGap;
    }
    for (const int left : ButtonLefts(buttons))
        layout.buttons.push_back({left, rowTop, kButtonWidth, kButtonHeight});
    const int rowBottom = layout.buttons.empty() ? rowTop : rowTop + kButtonHeight;
    layout.clientHeight = rowBottom + kBelowRow;
    return layout;
}

}  // namespace dialogs
