#include "host/qxpm/property_store.h"

#include <cstring>
#include <string>
#include <vector>

namespace qxpm {

namespace {

constexpr const char* sectionsKey = "Software\\Kelvaro\\Properties\\";
constexpr DWORD longestName = 16384;

HRESULT outcome(LONG error) {
    return error == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(error));
}

// A section is a single key: neither a path into another section nor the parent of all sections.
bool isSectionName(const char* name) {
    return name && *name && !std::strchr(name, '\\');
}

// Copies a text including its zero into a caller's buffer.
HRESULT give(const std::string& text, char* buffer, DWORD* size) {
    const DWORD room = *size;
    *size = static_cast<DWORD>(text.size()) + 1;
    if (room < *size) return HRESULT_FROM_WIN32(ERROR_MORE_DATA);
    std::memcpy(buffer, text.c_str(), *size);
    return S_OK;
}

// The text of a string value up to its zero, which may not have been stored.
LONG readText(HKEY key, const char* name, std::string& text) {
    DWORD type = 0;
    DWORD size = 0;
    LONG error = RegQueryValueExA(key, name, nullptr, &type, nullptr, &size);
    if (error != ERROR_SUCCESS) return error;
    if (type != REG_SZ) return ERROR_INVALID_DATA;
    std::vector<char> bytes(std::size_t{size} + 1);
    error = RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
    if (error == ERROR_SUCCESS) text = bytes.data();
    return error;
}

}  // namespace

HRESULT WINAPI PropertyStore::Open(const char* section, int flag) {
    section_.close();
    if (!isSectionName(section)) return E_INVALIDARG;
    const std::string path = std::string(sectionsKey) + section;
    if (flag == 0) {
        return outcome(RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, section_.receive()));
    }
    return outcome(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                   KEY_READ | KEY_WRITE, nullptr, section_.receive(), nullptr));
}

HRESULT WINAPI PropertyStore::EnumerateValue(DWORD index, char* name, DWORD* size) {
    if (!name || !size) return E_POINTER;
    if (!section_.get()) return E_UNEXPECTED;
    std::vector<char> text(longestName);
    DWORD length = longestName;
    const LONG error =
        RegEnumValueA(section_.get(), index, text.data(), &length, nullptr, nullptr, nullptr, nullptr);
    return error == ERROR_SUCCESS ? give(std::string(text.data(), length), name, size) : outcome(error);
}

HRESULT WINAPI PropertyStore::GetValue(const char* name, char* buffer, DWORD* size) {
    if (!buffer || !size) return E_POINTER;
    if (*size > 0) *buffer = '\0';
    if (!name) return E_INVALIDARG;
    if (!section_.get()) return E_UNEXPECTED;
    std::string text;
    const LONG error = readText(section_.get(), name, text);
    return error == ERROR_SUCCESS ? give(text, buffer, size) : outcome(error);
}

HRESULT WINAPI PropertyStore::SetValue(const char* name, const char* value) {
    if (!name || !value) return E_INVALIDARG;
    if (!section_.get()) return E_UNEXPECTED;
    return outcome(RegSetValueExA(section_.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                                  static_cast<DWORD>(std::strlen(value)) + 1));
}

HRESULT WINAPI PropertyStore::DeleteValue(const char* name) {
    if (!name) return E_INVALIDARG;
    if (!section_.get()) return E_UNEXPECTED;
    return outcome(RegDeleteValueA(section_.get(), name));
}

}  // namespace qxpm
