// The compiler's start-up code registers a module's unwind tables with the shared runtime library if the
// process has loaded it, as every program has that GCC links by default. These modules contain the runtime
// library: their unwinder would find no tables, and the first exception, caught or not, would end the
// process. The start-up code looks up the shared library by name before static objects are constructed, and
// here it finds none; so it registers the tables with the module's own unwinder, and removes them when the
// module is unloaded. The linker's --wrap redirects the pointers here.
#include <windows.h>

#include <cstring>

extern "C" const decltype(&::GetModuleHandleA) importedGetModuleHandle __asm__(
    "___real__imp__GetModuleHandleA@4");

namespace {

HMODULE WINAPI getModuleHandle(LPCSTR name) {
    if (name != nullptr && std::strcmp(name, "libgcc_s_dw2-1.dll") == 0) return nullptr;
    return importedGetModuleHandle(name);
}

}  // namespace

extern "C" {
decltype(&getModuleHandle) wrappedGetModuleHandle __asm__("___wrap__imp__GetModuleHandleA@4") =
    getModuleHandle;
}
