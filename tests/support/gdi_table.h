#pragma once

#include <windows.h>

#include <cstddef>

namespace testkit {

/// Counts another process's drawing objects in the table that its process block points to. For Wine, where
/// each process has a table of its own and GetGuiResources counts nothing; under Windows the table is
/// everybody's. The handle needs PROCESS_VM_READ and PROCESS_QUERY_INFORMATION.
std::size_t CountGdiTable(HANDLE process);

}  // namespace testkit
