#pragma once

#include <windows.h>

#include <cstddef>

namespace testkit {

/// Whether they can be counted: Wine gives 32-bit programs no table to count in.
bool CanCountDrawingObjects();

/// How many drawing objects a process has. The handle needs PROCESS_VM_READ and PROCESS_QUERY_INFORMATION.
std::size_t CountDrawingObjects(HANDLE process);

}  // namespace testkit
