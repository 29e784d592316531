#pragma once

#include <vector>

namespace dialogs {

/// A rectangle in twips.
struct TwipsRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// The places of all parts of a message, in twips from the client area's top left.
struct MessageLayout {
    TwipsRect text;
    TwipsRect input;                 ///< empty without an input line
    std::vector<TwipsRect> buttons;  ///< in the order of their indexes
    int clientWidth = 0;
    int clientHeight = 0;
};

/// The width that a message's text is wrapped at, in twips.
int MessageTextWidth();

/// The layout for a text of this height (twips), `buttons` answer buttons (0 to 3; more count as 3) and,
/// when asked for, the input line.
MessageLayout LayOutMessage(int textHeight, int buttons, bool inBox);

}  // namespace dialogs
