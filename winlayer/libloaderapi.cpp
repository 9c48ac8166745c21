#include "winlayer/include/libloaderapi.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "winlayer/machine.h"

namespace winlayer {
namespace {

std::string programPath(const Machine& machine) {
    return machine.drives.fromHost(std::filesystem::read_symlink("/proc/self/exe"));
}

// False when there is no such module.
bool pathOf(HMODULE module, std::string& path) {
    const Machine& machine = Machine::current();
    if (!machine.modules.path(module, path)) {
        return false;
    }
    const bool isProgram = module == nullptr || module == machine.modules.find(nullptr);
    if (path.empty()) {
        path = isProgram ? programPath(machine) : machine.systemDirectory() + "\\kernel32.dll";
    }
    return true;
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

HMODULE WINAPI GetModuleHandleA(LPCSTR name) {
    if (denied(__func__)) {
        return nullptr;
    }
    const HMODULE module = Machine::current().modules.find(name);
    if (module == nullptr) {
        SetLastError(ERROR_MOD_NOT_FOUND);
    }
    return module;
}

// A path that does not fit is cut: up to Windows XP without a zero and without an error, later with both.
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size) {
    if (denied(__func__)) {
        return 0;
    }
    std::string path;
    if (!pathOf(module, path)) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    const std::size_t copied = std::min<std::size_t>(path.size() + 1, size);
    std::memcpy(buffer, path.c_str(), copied);
    if (copied == path.size() + 1) {
        return static_cast<DWORD>(path.size());
    }
    if (Machine::current().version == WindowsVersion::Later) {
        if (size > 0) {
            buffer[size - 1] = 0;
        }
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
    }
    return size;
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) {
    if (denied(__func__)) {
        return nullptr;
    }
    const FARPROC procedure = Machine::current().modules.function(module, name);
    if (procedure == nullptr) {
        SetLastError(ERROR_PROC_NOT_FOUND);
    }
    return procedure;
}
