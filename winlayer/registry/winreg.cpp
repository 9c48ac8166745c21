#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/handle_table.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/registry/registry.h"

namespace winlayer {
namespace {

struct OpenKey final : KernelObject {
    OpenKey(Registry::KeyPointer opened, REGSAM granted) : key(std::move(opened)), access(granted) {}
    const Registry::KeyPointer key;
    const REGSAM access;
};

constexpr REGSAM everything = 0xFFFFFFFF;

// The key of a handle that grants the needed access. Windows 95, 98 and Me check no access.
LONG keyOf(HKEY handle, REGSAM needed, Registry::KeyPointer& key) {
    key = winlayer::Registry::current().root(handle);
    if (key) {
        return ERROR_SUCCESS;
    }
    const auto opened = winlayer::HandleTable::current().get<OpenKey>(handle);
    if (!opened) {
        return ERROR_INVALID_HANDLE;
    }
    if (isNt(winlayer::SystemSettings::current().version) && (opened->access & needed) != needed) {
        return ERROR_ACCESS_DENIED;
    }
    key = opened->key;
    return ERROR_SUCCESS;
}

LONG openHandle(Registry::KeyPointer key, REGSAM access, PHKEY result) {
    const REGSAM granted = (access & MAXIMUM_ALLOWED) != 0 ? everything : access;
    const HANDLE handle =
        winlayer::HandleTable::current().add(std::make_shared<OpenKey>(std::move(key), granted));
    if (handle == nullptr) {
        return ERROR_TOO_MANY_OPEN_FILES;
    }
    *result = static_cast<HKEY>(handle);
    return ERROR_SUCCESS;
}

// Copies a name with its zero; `size` includes the zero on entry but not on return, and is unchanged if the
// name does not fit.
LONG giveName(const std::string& name, LPSTR buffer, LPDWORD size) {
    if (*size <= name.size()) {
        return ERROR_MORE_DATA;
    }
    std::memcpy(buffer, name.c_str(), name.size() + 1);
    *size = static_cast<DWORD>(name.size());
    return ERROR_SUCCESS;
}

// Copies a value's type, data and size, each if the caller asks for it.
LONG giveData(const Registry::Value& value, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (type != nullptr) {
        *type = value.type;
    }
    if (size == nullptr) {
        return ERROR_SUCCESS;
    }
    const bool fits = value.data.size() <= *size;
    *size = static_cast<DWORD>(value.data.size());
    if (data == nullptr) {
        return ERROR_SUCCESS;
    }
    if (fits && !value.data.empty()) {
        std::memcpy(data, value.data.data(), value.data.size());
    }
    return fits ? ERROR_SUCCESS : LONG{ERROR_MORE_DATA};
}

const char* orEmpty(LPCSTR text) {
    return text == nullptr ? "" : text;
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

LONG WINAPI RegOpenKeyExA(HKEY key, LPCSTR subkey, DWORD, REGSAM access, PHKEY result) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return static_cast<LONG>(error);
    }
    if (result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    Registry::KeyPointer from;
    if (const LONG error = keyOf(key, 0, from); error != ERROR_SUCCESS) {
        return error;
    }
    if (*orEmpty(subkey) == 0 && winlayer::Registry::current().root(key)) {
        *result = key;  // a predefined key opens as itself
        return ERROR_SUCCESS;
    }
    Registry::KeyPointer opened;
    const LONG error = winlayer::Registry::current().open(from, orEmpty(subkey), opened);
    return error == ERROR_SUCCESS ? openHandle(std::move(opened), access, result) : error;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LONG WINAPI RegCreateKeyExA(HKEY key, LPCSTR subkey, DWORD, LPSTR, DWORD, REGSAM access,
                            const LPSECURITY_ATTRIBUTES, PHKEY result, LPDWORD disposition) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return static_cast<LONG>(error);
    }
    if (subkey == nullptr || result == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    Registry::KeyPointer from;
    if (const LONG error = keyOf(key, 0, from); error != ERROR_SUCCESS) {
        return error;
    }
    Registry::KeyPointer made;
    bool existed = false;
    const LONG error = winlayer::Registry::current().create(from, subkey, made, existed);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    if (disposition != nullptr) {
        *disposition = existed ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
    }
    return openHandle(std::move(made), access, result);
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

// Even if the fault plan fails the call, the handle is closed: no failed close leaves a valid handle.
LONG WINAPI RegCloseKey(HKEY key) {
    const DWORD planned = deniedCode(__func__);
    const bool predefined = winlayer::Registry::current().root(key) != nullptr;
    if (!predefined && !winlayer::HandleTable::current().get<OpenKey>(key)) {
        return ERROR_INVALID_HANDLE;
    }
    if (!predefined) {
        winlayer::HandleTable::current().remove(key);
    }
    return static_cast<LONG>(planned);
}

LONG WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return static_cast<LONG>(error);
    }
    if (data != nullptr && size == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    Registry::KeyPointer opened;
    if (const LONG error = keyOf(key, KEY_QUERY_VALUE, opened); error != ERROR_SUCCESS) {
        return error;
    }
    Registry::Value value;
    const LONG error = winlayer::Registry::current().value(opened, orEmpty(name), value);
    return error == ERROR_SUCCESS ? giveData(value, type, data, size) : error;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LONG WINAPI RegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return static_cast<LONG>(error);
    }
    if (data == nullptr && size != 0) {
        return ERROR_INVALID_PARAMETER;
    }
    Registry::KeyPointer opened;
    if (const LONG error = keyOf(key, KEY_SET_VALUE, opened); error != ERROR_SUCCESS) {
        return error;
    }
    Registry::Value value{orEmpty(name), type, {}};
    if (size != 0) {
        value.data.assign(data, data + size);
    }
    return winlayer::Registry::current().setValue(opened, std::move(value));
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LONG WINAPI RegDeleteValueA(HKEY key, LPCSTR name) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return static_cast<LONG>(error);
    }
    Registry::KeyPointer opened;
    if (const LONG error = keyOf(key, KEY_SET_VALUE, opened); error != ERROR_SUCCESS) {
        return error;
    }
    return winlayer::Registry::current().removeValue(opened, orEmpty(name));
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LONG WINAPI RegDeleteKeyA(HKEY key, LPCSTR subkey) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return static_cast<LONG>(error);
    }
    if (subkey == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    Registry::KeyPointer from;
    if (const LONG error = keyOf(key, 0, from); error != ERROR_SUCCESS) {
        return error;
    }
    return winlayer::Registry::current().remove(from, subkey,
                                                !isNt(winlayer::SystemSettings::current().version));
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LONG WINAPI RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD, LPSTR className,
                          LPDWORD classSize, PFILETIME lastWrite) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return static_cast<LONG>(error);
    }
    if (name == nullptr || nameSize == nullptr || className != nullptr || classSize != nullptr) {
        return ERROR_INVALID_PARAMETER;  // class names are not stored
    }
    Registry::KeyPointer opened;
    if (const LONG error = keyOf(key, KEY_ENUMERATE_SUB_KEYS, opened); error != ERROR_SUCCESS) {
        return error;
    }
    std::string found;
    FILETIME written{};
    const LONG error = winlayer::Registry::current().subkey(opened, index, found, written);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    if (lastWrite != nullptr) {
        *lastWrite = written;
    }
    return giveName(found, name, nameSize);
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

LONG WINAPI RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD, LPDWORD type,
                          LPBYTE data, LPDWORD size) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return static_cast<LONG>(error);
    }
    if (name == nullptr || nameSize == nullptr || (data != nullptr && size == nullptr)) {
        return ERROR_INVALID_PARAMETER;
    }
    Registry::KeyPointer opened;
    if (const LONG error = keyOf(key, KEY_QUERY_VALUE, opened); error != ERROR_SUCCESS) {
        return error;
    }
    Registry::Value value;
    LONG error = winlayer::Registry::current().value(opened, index, value);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    const LONG dataResult = giveData(value, type, data, size);
    error = giveName(value.name, name, nameSize);
    return error == ERROR_SUCCESS ? dataResult : error;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}
