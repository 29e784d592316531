#include "tests/fuzz/desktop_around.h"

#include "tests/support/pickers.h"

namespace testkit {

DesktopAround::DesktopAround() {
    PlayDrops();
    PlayClipboard();
    PlayPickers();
    PlayFileOperations();
}

DesktopAround::~DesktopAround() {
    if (format_ != 0) ReleaseStgMedium(&clipboard_);
}

void DesktopAround::Drop(Window window, DataObject& data) {
    const auto found = targets_.find(window.Handle());
    if (found == targets_.end()) return;
    DWORD effect = DROPEFFECT_COPY;
    found->second->DragEnter(&data, 0, {}, &effect);
    effect = DROPEFFECT_COPY;
    found->second->Drop(&data, 0, {}, &effect);
}

void DesktopAround::Copy(CLIPFORMAT format, DataObject& data) {
    if (format_ != 0) ReleaseStgMedium(&clipboard_);
    FORMATETC wanted{format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    format_ = format;
    EXPECT_EQ(data.GetData(&wanted, &clipboard_), S_OK);
}

void DesktopAround::PlayDrops() {
    fakes_.push_back(FAKE_CALL(RegisterDragDrop, [this](HWND window, LPDROPTARGET target) -> HRESULT {
        targets_[window] = target;
        return S_OK;
    }));
    fakes_.push_back(FAKE_CALL(RevokeDragDrop, [this](HWND window) -> HRESULT {
        targets_.erase(window);
        return S_OK;
    }));
}

void DesktopAround::PlayClipboard() {
    fakes_.push_back(
        FAKE_CALL(IsClipboardFormatAvailable, [this](UINT format) -> WINBOOL { return format == format_; }));
    fakes_.push_back(ANSWER_CALL(OpenClipboard, TRUE));
    fakes_.push_back(ANSWER_CALL(CloseClipboard, TRUE));
    fakes_.push_back(FAKE_CALL(GetClipboardData, [this](UINT format) -> HANDLE {
        return format == format_ ? clipboard_.hGlobal : nullptr;
    }));
}

void DesktopAround::PlayPickers() {
    AnswerPickers(fakes_, [this](Picker) { return picked_; });
}

void DesktopAround::PlayFileOperations() {
    // The shell's own asks, shows progress and fills a bin.
    fakes_.push_back(FAKE_CALL(SHFileOperationA, [](LPSHFILEOPSTRUCTA record) -> int {
        const std::wstring from = Wide(record->pFrom);
        std::wstring to = record->pTo == nullptr ? std::wstring() : Wide(record->pTo);
        const DWORD attributes = GetFileAttributesW(to.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
            to += L"\\" + from.substr(from.rfind(L'\\') + 1);
        BOOL done = FALSE;
        switch (record->wFunc) {
            case FO_COPY: done = CopyFileW(from.c_str(), to.c_str(), TRUE); break;
            case FO_DELETE: done = DeleteFileW(from.c_str()); break;
            default: done = MoveFileW(from.c_str(), to.c_str()); break;
        }
        return done != FALSE ? 0 : ERROR_CANCELLED;
    }));
}

}  // namespace testkit
