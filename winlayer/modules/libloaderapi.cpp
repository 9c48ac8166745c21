#include "winlayer/include/libloaderapi.h"

#include <algorithm>
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/modules/modules.h"

using namespace winlayer;

HMODULE WINAPI LoadLibraryA(LPCSTR name) try {
    if (denied(__func__)) {
        return nullptr;
    }
    if (name == nullptr || *name == 0) {
        return failed(name == nullptr ? ERROR_INVALID_PARAMETER : ERROR_MOD_NOT_FOUND);
    }
    HMODULE module = nullptr;
    return succeeded(winlayer::Modules::current().load(name, module)) ? module : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

BOOL WINAPI FreeLibrary(HMODULE module) try {
    if (denied(__func__)) {
        return FALSE;
    }
    const bool freed = module != nullptr && winlayer::Modules::current().free(module);
    return succeeded(freed ? NO_ERROR : ERROR_MOD_NOT_FOUND) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

HMODULE WINAPI GetModuleHandleA(LPCSTR name) try {
    if (denied(__func__)) {
        return nullptr;
    }
    const HMODULE module = winlayer::Modules::current().find(name);
    if (module == nullptr) {
        SetLastError(ERROR_MOD_NOT_FOUND);
    }
    return module;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

// A path that does not fit is truncated: up to Windows XP with neither a zero nor an error, later with both.
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size) try {
    if (denied(__func__)) {
        return 0;
    }
    std::string path;
    if (!winlayer::Modules::current().path(module, path)) {
        return failed(ERROR_MOD_NOT_FOUND);
    }
    const std::size_t copied = std::min<std::size_t>(path.size() + 1, size);
    std::memcpy(buffer, path.c_str(), copied);
    if (copied == path.size() + 1) {
        return static_cast<DWORD>(path.size());
    }
    if (winlayer::SystemSettings::current().version == WindowsVersion::Later) {
        if (size > 0) {
            buffer[size - 1] = 0;
        }
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
    }
    return size;
} catch (const std::bad_alloc&) {
    return outOfMemory(0U);
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) try {
    if (denied(__func__)) {
        return nullptr;
    }
    const Modules& modules = winlayer::Modules::current();
    if (!modules.exists(module)) {
        return failed(ERROR_MOD_NOT_FOUND);
    }
    // Functions have names only; none can be requested by number.
    const bool isName = reinterpret_cast<ULONG_PTR>(name) > 0xFFFF;
    const FARPROC procedure = isName ? modules.function(module, name) : nullptr;
    if (procedure == nullptr) {
        SetLastError(ERROR_PROC_NOT_FOUND);
    }
    return procedure;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}
