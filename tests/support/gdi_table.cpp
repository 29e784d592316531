#include "tests/support/gdi_table.h"

#include <winternl.h>

#include <vector>

#include "tests/support/text.h"
#include "tests/support/wine.h"

namespace testkit {
namespace {

/// The place of the table's address in a process block, and the table's layout.
constexpr std::size_t kTableOffset = sizeof(void*) == 8 ? 0xF8 : 0x94;
constexpr std::size_t kEntryCount = 0x4000;
struct Entry {
    ULONGLONG object;
    DWORD owner;
    WORD unique;
    BYTE type;
    BYTE flags;
    ULONGLONG user_data;
};
static_assert(sizeof(Entry) == 24);

void Read(HANDLE process, const void* from, void* to, std::size_t size) {
    SIZE_T count = 0;
    if (!ReadProcessMemory(process, from, to, size, &count) || count != size) {
        ThrowWindowsError("ReadProcessMemory");
    }
}

/// Counts them in the table that the process block points to. For Wine, where each process has a table of its
/// own; under Windows the table is everybody's.
std::size_t CountGdiTable(HANDLE process) {
    PROCESS_BASIC_INFORMATION basic = {};
    if (NtQueryInformationProcess(process, ProcessBasicInformation, &basic, sizeof basic, nullptr) != 0) {
        ThrowWindowsError("NtQueryInformationProcess");
    }
    const void* table = nullptr;
    Read(process, reinterpret_cast<const BYTE*>(basic.PebBaseAddress) + kTableOffset, &table, sizeof table);
    std::vector<Entry> entries(kEntryCount);
    Read(process, table, entries.data(), entries.size() * sizeof(Entry));
    std::size_t count = 0;
    for (const Entry& entry : entries)
        count += entry.type != 0;
    return count;
}

}  // namespace

bool CanCountDrawingObjects() { return sizeof(void*) == 8 || !RunsUnderWine(); }

std::size_t CountDrawingObjects(HANDLE process) {
    // Wine answers 0, which no program with a window has.
    if (const DWORD count = GetGuiResources(process, GR_GDIOBJECTS)) return count;
    return CountGdiTable(process);
}

}  // namespace testkit
