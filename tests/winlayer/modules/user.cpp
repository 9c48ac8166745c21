#include "journal.h"

extern "C" int twice(int value);  // of base.dll

namespace {

HMODULE ownModule() {
    MEMORY_BASIC_INFORMATION information{};
    VirtualQuery(reinterpret_cast<LPCVOID>(&ownModule), &information, sizeof information);
    return static_cast<HMODULE>(information.AllocationBase);
}

LPARAM lengthOfPath(HMODULE module) {
    char path[MAX_PATH];
    return static_cast<LPARAM>(GetModuleFileNameA(module, path, sizeof path));
}

struct Lifetime {
    Lifetime() { tell(objectBegins, ownModule(), lengthOfPath(ownModule())); }
    ~Lifetime() { tell(objectEnds, ownModule(), lengthOfPath(ownModule())); }
};

const Lifetime lifetime;
int calls = 0;

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    tell(entryCalled + reason, module, reserved != nullptr);
    return TRUE;
}

// Four times the value, and how often it was called since the module was loaded.
extern "C" int fourTimes(int value, int* count) {
    *count = ++calls;
    return twice(twice(value));
}
