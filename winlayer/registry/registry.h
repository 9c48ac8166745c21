#pragma once
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The machine's registry: in memory, with empty roots at first. Names are case-insensitive and keep the case
// they were created with; subkeys are numbered in the order of their names, values in order of creation.
// Paths are subkey names separated by backslashes; an empty path is the key itself. Each operation returns a
// Windows error code, ERROR_KEY_DELETED for a deleted key. Thread rule: any thread may call every operation.
class Registry {
public:
    // The current machine's.
    static Registry& current();

    Registry();
    ~Registry();

    struct Key;
    using KeyPointer = std::shared_ptr<Key>;

    struct Value {
        std::string name;
        DWORD type = REG_NONE;
        std::vector<BYTE> data;
    };

    // The root of a predefined handle; null for any other.
    KeyPointer root(HKEY key) const;

    LONG open(const KeyPointer& from, const std::string& path, KeyPointer& key) const;
    // Creates the missing keys of the path; `existed` reports whether none was missing.
    LONG create(const KeyPointer& from, const std::string& path, KeyPointer& key, bool& existed);
    // ERROR_ACCESS_DENIED for a root, and for a key with subkeys unless `withSubkeys`.
    LONG remove(const KeyPointer& from, const std::string& path, bool withSubkeys);
    LONG subkey(const KeyPointer& key, DWORD index, std::string& name, FILETIME& written) const;

    LONG value(const KeyPointer& key, const std::string& name, Value& value) const;
    LONG value(const KeyPointer& key, DWORD index, Value& value) const;
    LONG setValue(const KeyPointer& key, Value value);
    LONG removeValue(const KeyPointer& key, const std::string& name);

private:
    struct Roots;
    mutable std::mutex mutex_;
    std::unique_ptr<Roots> roots_;
};

}  // namespace winlayer
