#include "support/registry_folder.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

void deleteTree(HKEY parent, const std::string& name) {
    HKEY key = nullptr;
    if (::RegOpenKeyExA(parent, name.c_str(), 0, KEY_READ | KEY_WRITE, &key) != ERROR_SUCCESS) {
        return;
    }
    std::vector<char> subkey(1024);
    auto size = static_cast<DWORD>(subkey.size());
    while (::RegEnumKeyExA(key, 0, subkey.data(), &size, nullptr, nullptr, nullptr, nullptr) ==
           ERROR_SUCCESS) {
        deleteTree(key, subkey.data());
        size = static_cast<DWORD>(subkey.size());
    }
    ::RegCloseKey(key);
    EXPECT_EQ(::RegDeleteKeyA(parent, name.c_str()), ERROR_SUCCESS) << name;
}

}  // namespace

// The name tells test programs apart that run at the same time on one Windows.
RegistryFolder::RegistryFolder()
    : path_("Software\\EmergencyDiskTest" + std::to_string(::GetCurrentThreadId())) {
    deleteTree(HKEY_CURRENT_USER, path_);
    EXPECT_EQ(::RegCreateKeyExA(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                KEY_READ | KEY_WRITE, nullptr, &key_, nullptr),
              ERROR_SUCCESS);
}

RegistryFolder::~RegistryFolder() {
    ::RegCloseKey(key_);
    deleteTree(HKEY_CURRENT_USER, path_);
}

void RegistryFolder::put(const std::string& name, DWORD type, const std::string& bytes) const {
    EXPECT_EQ(::RegSetValueExA(key_, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                               static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
}
