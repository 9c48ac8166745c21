// The compiler's start-up code gives a module's unwind tables to the shared runtime library where the process
// has it, as every program has that GCC links by default. These modules have the runtime library inside: its
// unwinder would know no tables, and the first exception, caught or not, would end the process. The start-up
// code looks for the shared library by name before static objects are made, and here it finds none; so it
// registers the tables with the module's own unwinder, and takes them back from there when the module goes.
// The linker's --wrap leads the pointers here.
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
