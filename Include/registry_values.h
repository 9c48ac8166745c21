#pragma once
#include <windows.h>

#include <string>
#include <vector>

namespace UTILS {

// A value as the registry stores it. The data are whatever was written: texts need not end in a zero, numbers
// need not have four bytes.
struct RegistryValue {
    std::string name;
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

// Each returns the system's code and grows its buffers until everything fits. size: characters of the first
// name buffer; 0 for a default.
LONG ReadRegistryValue(HKEY key, const std::string& name, RegistryValue& value);
LONG EnumRegistryValue(HKEY key, DWORD index, DWORD size, RegistryValue& value);
LONG EnumRegistryKey(HKEY key, DWORD index, DWORD size, std::string& name);

// The number in the first four bytes, in the byte order of the type; missing bytes count as 0.
DWORD RegistryNumber(const RegistryValue& value);
// Numbers and binary data in decimal, anything else up to its first zero or its end.
std::string RegistryText(const RegistryValue& value);

// Deletes everything below a key, and the key's values. Result: the system's code; what was deleted before a
// failure stays deleted.
LONG DeleteRegistryContents(HKEY key);

}  // namespace UTILS
