#pragma once
#include <windows.h>

#include <string>

// A fresh, empty registry key for one test case below HKEY_CURRENT_USER, removed with everything in it when
// the object goes.
class RegistryFolder {
public:
    RegistryFolder();
    ~RegistryFolder();
    RegistryFolder(const RegistryFolder&) = delete;
    RegistryFolder& operator=(const RegistryFolder&) = delete;

    // Below the root, without a trailing backslash.
    const std::string& path() const { return path_; }
    HKEY key() const { return key_; }
    // Writes a value with any type and bytes.
    void put(const std::string& name, DWORD type, const std::string& bytes) const;

private:
    std::string path_;
    HKEY key_ = nullptr;
};
