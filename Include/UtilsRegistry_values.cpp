#include <utility>

#include "UtilsRegistry.h"
#include "registry_values.h"

namespace UTILS {
namespace {

constexpr std::size_t numberSize = 4;

}  // namespace

int UtilsRegistry::GetValue(const UtilsString& name, DWORD& data) {
    RegistryValue value;
    if (!Read(name, value) || value.data.size() != numberSize) {
        return 0;
    }
    data = RegistryNumber(value);
    return 1;
}

int UtilsRegistry::GetValue(const UtilsString& name, UtilsString& data) {
    RegistryValue value;
    if (!Read(name, value)) {
        return 0;
    }
    data = RegistryText(value);
    return 1;
}

bool UtilsRegistry::Read(const UtilsString& name, RegistryValue& value) {
    return CanUse(name) && Took(ReadRegistryValue(current_.get(), name.c_str(), value), value);
}

bool UtilsRegistry::Took(LONG result, const RegistryValue& value) {
    if (!Succeeded(result)) {
        return false;
    }
    querySize_ = static_cast<DWORD>(value.data.size());
    valueType_ = value.type;
    return true;
}

int UtilsRegistry::SetValue(const UtilsString& name, DWORD data) {
    return Write(name, REG_DWORD, &data, sizeof data);
}

int UtilsRegistry::SetValue(const UtilsString& name, const UtilsString& data) {
    return Write(name, REG_SZ, data.c_str(), data.length() + 1);
}

int UtilsRegistry::Write(const UtilsString& name, DWORD type, const void* data, DWORD size) {
    if (!CanUse(name) || !Succeeded(::RegSetValueExA(current_.get(), name.c_str(), 0, type,
                                                     static_cast<const BYTE*>(data), size))) {
        return 0;
    }
    setSize_ = size;
    return 1;
}

int UtilsRegistry::DeleteValue(const UtilsString& name) {
    return CanUse(name) && Succeeded(::RegDeleteValueA(current_.get(), name.c_str())) ? 1 : 0;
}

int UtilsRegistry::EnumKey(DWORD index, UtilsString& name, DWORD size) {
    std::string found;
    if (!current_ || !Succeeded(EnumRegistryKey(current_.get(), index, size, found))) {
        return 0;
    }
    name = found;
    return 1;
}

int UtilsRegistry::EnumValue(DWORD index, UtilsString& name, UtilsString& data, DWORD size) {
    RegistryValue value;
    if (!current_ || !Took(EnumRegistryValue(current_.get(), index, size, value), value)) {
        return 0;
    }
    name = value.name;
    data = RegistryText(value);
    return 1;
}

int UtilsRegistry::EnumValue(DWORD index, UtilsString& name, DWORD& data, DWORD size) {
    RegistryValue value;
    if (!current_ || !Took(EnumRegistryValue(current_.get(), index, size, value), value) ||
        value.data.size() != numberSize) {
        return 0;
    }
    name = value.name;
    data = RegistryNumber(value);
    return 1;
}

int UtilsRegistry::DeleteKey(const UtilsString& name, int flag) {
    const std::string path = SystemPath(KeyNames(name));
    if (!current_ || path.empty()) {
        return 0;
    }
    const bool ready = flag != 0 ? EmptyKey(path) : !RefuseSubkeys(path);
    return ready && Succeeded(::RegDeleteKeyA(current_.get(), path.c_str())) ? 1 : 0;
}

bool UtilsRegistry::EmptyKey(const std::string& path) {
    RegistryKey key;
    return Succeeded(key.Open(current_.get(), path)) && Succeeded(DeleteRegistryContents(key.get()));
}

// The NT family itself refuses to delete a key with subkeys; the others would delete them too.
bool UtilsRegistry::RefuseSubkeys(const std::string& path) {
    RegistryKey key;
    std::string subkey;
    if (system_.IsNT()) {
        return false;
    }
    if (!Succeeded(key.Open(current_.get(), path))) {
        return true;
    }
    const LONG result = EnumRegistryKey(key.get(), 0, 0, subkey);
    if (result != ERROR_NO_MORE_ITEMS) {
        result_ = result == ERROR_SUCCESS ? LONG{ERROR_ACCESS_DENIED} : result;
    }
    return result != ERROR_NO_MORE_ITEMS;
}

int UtilsRegistry::DeleteKey(int) {
    const std::string path = SystemPath(keyPath_);
    if (!current_ || path.empty() || !Succeeded(DeleteRegistryContents(current_.get())) ||
        !Succeeded(::RegDeleteKeyA(root_, path.c_str()))) {
        return 0;
    }
    current_.Close();
    return 1;
}

}  // namespace UTILS
