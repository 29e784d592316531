#pragma once

#include <windows.h>

#include <cstddef>

namespace testkit {

/// How many drawing objects a process has. The handle needs PROCESS_VM_READ and PROCESS_QUERY_INFORMATION.
std::size_t CountDrawingObjects(HANDLE process);

}  // namespace testkit
