#include "journal.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    tell(entryCalled + refuserModule + reason, module, reserved != nullptr);
    return FALSE;
}
