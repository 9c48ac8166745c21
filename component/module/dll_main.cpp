// The library's entry point.
#include <windows.h>

#include "entry_points.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    if (reason == DLL_PROCESS_ATTACH) {
        AttachLibrary(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        DetachLibrary(reserved != nullptr);
    }
    return TRUE;
}
