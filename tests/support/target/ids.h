// What is in the window of quon_test_target.exe.
#pragma once

namespace testkit::target {

inline constexpr wchar_t kClass[] = L"QuonTestTarget";

/// An edit field.
inline constexpr int kEdit = 10;
/// A button that asks "Really?" in a system message box and writes "yes" or "no" into the journal.
inline constexpr int kAskButton = 11;
/// A container with a red square in it, which has the tip "A red square", titled "Red" from the first mouse
/// move on.
inline constexpr int kContainer = 12;
inline constexpr int kRedSquare = 13;
/// A text that tells what the mouse and the menu did last.
inline constexpr int kJournal = 14;

/// Each press of the middle mouse button makes this many brushes and keeps them.
inline constexpr int kBrushesKept = 10;

inline constexpr int kCommandFirst = 41;
inline constexpr int kCommandChecked = 42;
inline constexpr int kCommandDisabled = 43;
inline constexpr int kCommandAmpersand = 44;
inline constexpr int kCommandInner = 45;

/// A command that no menu has: it opens a box that looks like the product's message box from outside.
inline constexpr int kCommandBox = 50;
inline constexpr int kBoxLabel = 300;
inline constexpr int kBoxFirstButton = 310;
inline constexpr int kBoxInput = 320;

/// A command that stops the program for good: it answers no message any more.
inline constexpr int kCommandHang = 51;

/// What WM_COPYDATA orders, in the lowest byte of dwData; the answer is 1 when it was done.
enum Order {
    kOrderCopyText = 1,       ///< puts the UTF-16 text on the clipboard, as often as dwData / 256 says
    kOrderCopyFiles = 2,      ///< puts a list of paths there, each with its NUL, one more at the end
    kOrderHoldClipboard = 3,  ///< opens the clipboard and keeps it open
    kOrderLetClipboardGo = 4,
};

}  // namespace testkit::target
