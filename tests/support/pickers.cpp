#include "tests/support/pickers.h"

#include <windows.h>

#include <commdlg.h>
#include <shlobj.h>

#include <cwchar>
#include <memory>

#include "tests/support/text.h"

namespace testkit {

void AnswerPickers(RecordedCalls& fakes, const std::function<std::string(Picker)>& pick) {
    fakes.push_back(FAKE_CALL(GetOpenFileNameW, [pick](LPOPENFILENAMEW record) -> BOOL {
        const std::wstring path = Wide(pick(Picker::kFile));
        if (path.size() >= record->nMaxFile) return FALSE;
        std::wcscpy(record->lpstrFile, path.c_str());
        return !path.empty();
    }));
    const auto folder = std::make_shared<std::wstring>();
    fakes.push_back(FAKE_CALL(SHBrowseForFolderW, [pick, folder](LPBROWSEINFOW) -> LPITEMIDLIST {
        *folder = Wide(pick(Picker::kFolder));
        // The end of a list, whose path the next fake knows.
        return folder->empty() ? nullptr : static_cast<LPITEMIDLIST>(CoTaskMemAlloc(sizeof(USHORT)));
    }));
    fakes.push_back(FAKE_CALL(SHGetPathFromIDListEx,
                              [folder](LPCITEMIDLIST, LPWSTR path, DWORD size, GPFIDL_FLAGS) -> BOOL {
                                  if (folder->size() >= size) return FALSE;
                                  std::wcscpy(path, folder->c_str());
                                  return TRUE;
                              }));
}

}  // namespace testkit
