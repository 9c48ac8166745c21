#pragma once
#include <windows.h>

#include <string>

#include "CNTAdminObject.h"
#include "UtilsNumber.h"
#include "UtilsString.h"
#include "registry_key.h"

namespace UTILS {

struct RegistryValue;

// One registry key, named by a root key and subkeys ("HKLM\Software\Vendor\Product") and kept open as long as
// the object lives or until it opens another.
//
// The constructors throw; every other operation returns 1 for success and 0 for failure, and a failure leaves
// the key and the outputs unchanged. An empty name, or no open key, gives 0 without a system call. Each may
// throw std::bad_alloc. Thread rule: one thread at a time.
//
//   UtilsRegistry key("HKCU\\Software\\Vendor", 1);
//   key.SetValue("Runs", 42);
class UtilsRegistry {
public:
    // Open the key of a path; a nonzero `create` creates it and its parents if missing. Roots are HKLM, HKCU,
    // HKCR, HKU and HKCC or their full names, compared under the path's case flag and followed by a
    // backslash. The last argument has no effect.
    // Throws std::invalid_argument for an empty path, std_exception of type 204 for a path without a root
    // name and for a key that cannot be opened or created.
    explicit UtilsRegistry(const UtilsString& path, int create = 0, int = 0);
    // The same below an open root, which the caller keeps; an empty subkey is the root itself. Throws
    // std::invalid_argument for a null root.
    UtilsRegistry(HKEY root, const UtilsString& subkey, int create = 0, int = 0);

    // The copy opens the same key for itself; throws std_exception of type 204 if it cannot, and the target
    // of an assignment is then unchanged.
    UtilsRegistry(const UtilsRegistry& other);
    const UtilsRegistry& operator=(const UtilsRegistry& other);
    virtual ~UtilsRegistry() = default;

    // Open, or create and open, the key of another path instead. The flag has no effect.
    int OpenKey(const UtilsString& path) { return Enter(path, false); }
    int RegOpenKey(const UtilsString& path) { return OpenKey(path); }
    int CreateKey(const UtilsString& path, int = 0) { return Enter(path, true); }
    int RegCreateKey(const UtilsString& path, int flag = 0) { return CreateKey(path, flag); }

    // Open, or create and open, a subkey of the current key; its name (one or more levels) is added to the
    // key path. The flag has no effect.
    int OpenSubKey(const UtilsString& name) { return EnterBelow(name, false); }
    int RegOpenSubKey(const UtilsString& name) { return OpenSubKey(name); }
    int CreateSubKey(const UtilsString& name, int = 0) { return EnterBelow(name, true); }
    int RegCreateSubKey(const UtilsString& name, int flag = 0) { return CreateSubKey(name, flag); }

    // Read a value of exactly four bytes, of any type; a big-endian one is converted.
    int GetValue(const UtilsString& name, DWORD& data);
    int QueryValue(const UtilsString& name, DWORD& data) { return GetValue(name, data); }
    int RegQueryValue(const UtilsString& name, DWORD& data) { return GetValue(name, data); }
    template <UnsignedLong Number>
    int GetValue(const UtilsString& name, Number& data) {
        return ReadNumber(data, [&](DWORD& number) { return GetValue(name, number); });
    }
    template <UnsignedLong Number>
    int QueryValue(const UtilsString& name, Number& data) {
        return GetValue(name, data);
    }
    template <UnsignedLong Number>
    int RegQueryValue(const UtilsString& name, Number& data) {
        return GetValue(name, data);
    }
    // Read a value as text of any length: numbers and binary data (their first four bytes) in decimal, any
    // other type up to its first zero.
    int GetValue(const UtilsString& name, UtilsString& data);
    int QueryValue(const UtilsString& name, UtilsString& data) { return GetValue(name, data); }
    int RegQueryValue(const UtilsString& name, UtilsString& data) { return GetValue(name, data); }

    // Write a number (REG_DWORD), or a text with its terminating zero (REG_SZ).
    int SetValue(const UtilsString& name, DWORD data);
    int RegSetValue(const UtilsString& name, DWORD data) { return SetValue(name, data); }
    int SetValue(const UtilsString& name, const UtilsString& data);
    int RegSetValue(const UtilsString& name, const UtilsString& data) { return SetValue(name, data); }

    int DeleteValue(const UtilsString& name);
    int RegDeleteValue(const UtilsString& name) { return DeleteValue(name); }

    // The subkey, or the value, at an index from 0. size: characters of the first name buffer, 0 for a
    // default; longer names are read completely. Data are converted as by GetValue. 0 past the last one and,
    // for a number, for a value that is not four bytes long; GetLastResult distinguishes these.
    int EnumKey(DWORD index, UtilsString& name, DWORD size = 0);
    int RegEnumKey(DWORD index, UtilsString& name, DWORD size = 0) { return EnumKey(index, name, size); }
    int EnumValue(DWORD index, UtilsString& name, UtilsString& data, DWORD size = 0);
    int RegEnumValue(DWORD index, UtilsString& name, UtilsString& data, DWORD size = 0) {
        return EnumValue(index, name, data, size);
    }
    int EnumValue(DWORD index, UtilsString& name, DWORD& data, DWORD size = 0);
    int RegEnumValue(DWORD index, UtilsString& name, DWORD& data, DWORD size = 0) {
        return EnumValue(index, name, data, size);
    }
    template <UnsignedLong Number>
    int EnumValue(DWORD index, UtilsString& name, Number& data, DWORD size = 0) {
        return ReadNumber(data, [&](DWORD& number) { return EnumValue(index, name, number, size); });
    }
    template <UnsignedLong Number>
    int RegEnumValue(DWORD index, UtilsString& name, Number& data, DWORD size = 0) {
        return EnumValue(index, name, data, size);
    }

    // Delete a subkey. flag nonzero: with everything below it; 0: only if it has no subkeys, on every
    // Windows. What was deleted before a failure stays deleted.
    int DeleteKey(const UtilsString& name, int flag = 0);
    int RegDeleteKey(const UtilsString& name, int flag = 0) { return DeleteKey(name, flag); }
    // Delete the current key with everything below it; then no key is open. 0 for a root, from which nothing
    // is deleted. What was deleted before a failure stays deleted. The argument has no effect.
    int DeleteKey(int);
    int RegDeleteKey(int flag) { return DeleteKey(flag); }

    // The root's name: form 1 abbreviated, 2 in full, any other as the path gave it (abbreviated if the root
    // was passed as a handle); empty for an unknown root.
    UtilsString GetRootPath(int form) const;
    // The key path below the root, every name followed by a backslash; withRoot nonzero: preceded by the
    // root's name as the path gave it and a backslash.
    UtilsString GetRegistryPath(int withRoot) const;

    // The result of the last registry call, the type and size in bytes of the value read last, and the size
    // in bytes of the value written last.
    LONG GetLastResult() const { return result_; }
    DWORD GetValueType() const { return valueType_; }
    DWORD GetQuerySize() const { return querySize_; }
    DWORD GetSetSize() const { return setSize_; }

private:
    struct Place {
        HKEY root = nullptr;
        int longName = 0;
        UtilsString keyPath;
    };

    // Unlike WithDword, leaves the number unchanged if nothing was read.
    template <UnsignedLong Number, class Read>
    static int ReadNumber(Number& data, Read read) {
        DWORD number = 0;
        const int done = read(number);
        if (done != 0) data = number;
        return done;
    }
    static bool ParseOutPath(const UtilsString& path, Place& place);
    static UtilsString KeyNames(const UtilsString& text);
    static std::string SystemPath(const UtilsString& keyPath);

    bool OpenAt(HKEY base, const UtilsString& keyPath, bool create, RegistryKey& key);
    void EnterFirst(Place& place, int create, const UtilsString& path);
    void CopyData(const UtilsRegistry& other);
    int Enter(const UtilsString& path, bool create);
    int EnterBelow(const UtilsString& name, bool create);
    bool Read(const UtilsString& name, RegistryValue& value);
    int Write(const UtilsString& name, DWORD type, const void* data, DWORD size);
    bool EmptyKey(const std::string& path);
    bool RefuseSubkeys(const std::string& path);
    bool CanUse(const UtilsString& name) const { return current_ && name.length() != 0; }
    bool Succeeded(LONG result);
    bool Took(LONG result, const RegistryValue& value);

    HKEY root_ = nullptr;
    RegistryKey current_;
    DWORD querySize_ = 0;
    DWORD setSize_ = 0;
    LONG result_ = ERROR_SUCCESS;
    DWORD valueType_ = REG_NONE;
    int longName_ = 0;
    UtilsString keyPath_;
    CNTAdminObject system_;
};

}  // namespace UTILS
