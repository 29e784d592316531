#include "tests/support/program_calls.h"

#include <windows.h>

#include <algorithm>

#include "tests/support/text.h"

namespace testkit {

RecordedCall ProgramLiesAt(const std::string& path) {
    return FAKE_CALL(GetModuleFileNameW,
                     [program = Wide(path)](HMODULE module, LPWSTR name, DWORD size) -> DWORD {
                         if (module != nullptr || size == 0)
                             return ORIGINAL_CALL(GetModuleFileNameW)(module, name, size);
                         // As much as there is room for.
                         const std::size_t length = std::min<std::size_t>(program.size(), size - 1);
                         *std::copy_n(program.begin(), length, name) = L'\0';
                         return program.size() < size ? static_cast<DWORD>(program.size()) : size;
                     });
}

RecordedCall LogStarts(CallLog& log) {
    return FAKE_CALL(CreateProcessA,
                     [&log](LPCSTR, LPSTR line, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD,
                            LPVOID, LPCSTR, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION) -> BOOL {
                         log.Add("start", line, startup->wShowWindow);
                         return FALSE;
                     });
}

}  // namespace testkit
