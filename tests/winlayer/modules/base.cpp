#include "journal.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    tell(entryCalled + baseModule + reason, module, reserved != nullptr);
    return TRUE;
}

extern "C" int twice(int value) {
    return 2 * value;
}
