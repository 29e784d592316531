#include "tests/support/wine.h"

#include <windows.h>

#include <cstdlib>

namespace testkit {

int WineVersion() {
    static const int version = [] {
        using GetVersion = const char*(CDECL*)();
        const auto get = reinterpret_cast<GetVersion>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version")));
        return get == nullptr ? 0 : std::atoi(get());
    }();
    return version;
}

}  // namespace testkit
