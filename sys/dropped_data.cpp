#include "sys/dropped_data.h"

#include <ole2.h>
#include <shellapi.h>

#include <string_view>

#include "win/text.h"

namespace sys {
namespace {

FORMATETC Format(CLIPFORMAT format) { return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL}; }

/// One format of a data object as a block of memory; given back with this value.
class Medium {
  public:
    Medium(IDataObject* object, CLIPFORMAT format) {
        FORMATETC wanted = Format(format);
        held_ = object->QueryGetData(&wanted) == S_OK && object->GetData(&wanted, &medium_) == S_OK;
    }
    Medium(const Medium&) = delete;
    Medium& operator=(const Medium&) = delete;
    Medium(Medium&&) = delete;
    Medium& operator=(Medium&&) = delete;
    ~Medium() {
        if (held_) ReleaseStgMedium(&medium_);
    }

    explicit operator bool() const noexcept { return held_ && medium_.tymed == TYMED_HGLOBAL; }
    [[nodiscard]] HGLOBAL Memory() const noexcept { return medium_.hGlobal; }

  private:
    STGMEDIUM medium_{};
    bool held_ = false;
};

std::string FirstFileIn(HGLOBAL memory) {
    const auto list = static_cast<HDROP>(memory);
    std::wstring path(DragQueryFileW(list, 0, nullptr, 0) + size_t{1}, L'\0');
    path.resize(DragQueryFileW(list, 0, path.data(), static_cast<UINT>(path.size())));
    return win::ToBytes(path);
}

}  // namespace

std::string WideTextIn(HGLOBAL memory) {
    const auto* text = static_cast<const wchar_t*>(GlobalLock(memory));
    if (text == nullptr) return {};
    // The text ends at its NUL, or where the block ends.
    const std::wstring_view block(text, GlobalSize(memory) / sizeof(wchar_t));
    std::string bytes = win::ToBytes(block.substr(0, block.find(L'\0')));
    GlobalUnlock(memory);
    return bytes;
}

bool OffersDroppableData(IDataObject* object) {
    FORMATETC text = Format(CF_UNICODETEXT);
    FORMATETC files = Format(CF_HDROP);
    return object->QueryGetData(&text) == S_OK || object->QueryGetData(&files) == S_OK;
}

std::optional<DroppedData> ReadDroppedData(IDataObject* object) {
    if (const Medium text(object, CF_UNICODETEXT); text) return DroppedData{true, WideTextIn(text.Memory())};
    if (const Medium files(object, CF_HDROP); files) return DroppedData{false, FirstFileIn(files.Memory())};
    return std::nullopt;
}

std::string FirstLine(const std::string& text) {
    std::string line = win::Before(text, '\n');
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

}  // namespace sys
