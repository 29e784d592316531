#include "win/byte_limit.h"

#include <algorithm>
#include <utility>

#include "win/text.h"

namespace win {

void ByteLimit::Attach(HWND edit, size_t bytes) {
    edit_ = edit;
    bytes_ = bytes;
    text_ = WindowText(edit);
    // Its own limit of 30,000 characters would cut a pasted text.
    SendMessageW(edit, EM_LIMITTEXT, 0, 0);
}

void ByteLimit::OnChange() {
    if (edit_ == nullptr) return;
    std::string text = WindowText(edit_);
    if (text.size() <= std::max(bytes_, text_.size())) {
        text_ = std::move(text);
        return;
    }
    // The caret goes back to where the text began to grow.
    DWORD end = 0;
    SendMessageW(edit_, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
    const size_t grown = ToWide(text).size() - std::min(ToWide(text).size(), ToWide(text_).size());
    SetText(edit_, text_);
    const auto caret = static_cast<WPARAM>(end - std::min<size_t>(end, grown));
    SendMessageW(edit_, EM_SETSEL, caret, static_cast<LPARAM>(caret));
    MessageBeep(MB_OK);
}

}  // namespace win
