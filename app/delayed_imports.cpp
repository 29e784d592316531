#include <windows.h>

#include <delayimp.h>

namespace {

/// Asked before a library is loaded that was left for the first call into it. The address of the function is
/// stored beside the program's imports then, which newer linkers (binutils 2.44) put where nothing may be
/// written: without this the first file picker would end the program. The page stays writable, because
/// another thread may be at its own first call.
FARPROC WINAPI MakeAddressWritable(unsigned step, PDelayLoadInfo import) {
    DWORD before = 0;
    if (step == dliStartProcessing)
        VirtualProtect(static_cast<void*>(import->ppfn), sizeof(*import->ppfn), PAGE_READWRITE, &before);
    return nullptr;
}

}  // namespace

// The name is the linker's.
PfnDliHook __pfnDliNotifyHook2 = &MakeAddressWritable;
