// What a test and the drag source say to each other. The test writes the offer into the file named on the
// source's command line: the allowed effects as a number, then "file <path>" lines, then "text" and the text
// as the rest of the file, all UTF-8 with "\n". The source's answers are titles of its window.
#pragma once

namespace testkit::drag_source {

inline constexpr wchar_t kClass[] = L"QuonTestDragSource";
inline constexpr wchar_t kWaiting[] = L"waiting";
inline constexpr wchar_t kDragging[] = L"dragging";
/// Followed by the effect's number.
inline constexpr wchar_t kDropped[] = L"dropped ";

}  // namespace testkit::drag_source
