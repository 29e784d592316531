#include "sys/clipboard.h"

#include <windows.h>

#include <shellapi.h>

#include "sys/dropped_data.h"
#include "sys/shell_link.h"
#include "win/text.h"
#include "win/trace.h"

namespace sys {
namespace {

// Large enough for 260 characters of up to four bytes in a UTF-8 process.
constexpr size_t kPathBuffer = size_t{4} * MAX_PATH;
constexpr UINT kAskForCount = 0xFFFFFFFF;

/// The clipboard, open as long as this value lives.
class OpenedClipboard {
  public:
    OpenedClipboard() noexcept : open_(win::Traced(OpenClipboard(nullptr), "OpenClipboard") != FALSE) {}
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    OpenedClipboard(OpenedClipboard&&) = delete;
    OpenedClipboard& operator=(OpenedClipboard&&) = delete;
    ~OpenedClipboard() {
        if (open_) CloseClipboard();
    }

    explicit operator bool() const noexcept { return open_; }

  private:
    bool open_;
};

}  // namespace

bool clsClipboard::HasFiles() { return IsClipboardFormatAvailable(CF_HDROP) != FALSE; }

std::vector<std::string> clsClipboard::GetFiles() {
    if (!HasFiles()) return {};
    const OpenedClipboard clipboard;
    if (!clipboard) return {};
    const auto list = static_cast<HDROP>(GetClipboardData(CF_HDROP));
    char none[] = "";
    std::vector<std::string> files(DragQueryFileA(list, kAskForCount, none, 0));
    std::string buffer(kPathBuffer, ' ');
    for (UINT index = 0; index < files.size(); ++index) {
        DragQueryFileA(list, index, buffer.data(), static_cast<UINT>(buffer.size()));
        // The arguments of a link are not part of what was copied.
        files[index] = win::Before(ReadLinkTarget(win::Before(buffer, '\0')), '|');
    }
    return files;
}

std::string clsClipboard::GetText() {
    if (IsClipboardFormatAvailable(CF_UNICODETEXT) == FALSE) return {};
    const OpenedClipboard clipboard;
    const HANDLE text = clipboard ? GetClipboardData(CF_UNICODETEXT) : nullptr;
    return text == nullptr ? std::string() : WideTextIn(text);
}

void clsClipboard::ClearTheClipboard() {
    const OpenedClipboard clipboard;
    EmptyClipboard();
}

}  // namespace sys
