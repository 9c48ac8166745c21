#include "UtilsRegistry.h"

#include <utility>

#include "StandardFailure.h"
#include "std_exception.h"

namespace UTILS {
namespace {

constexpr char sourceFile[] = R"(..\..\Include\UtilsRegistry)";
constexpr DWORD reportType = 204;
constexpr char cannotCreate[] = "Cannot Create Registry Entry:  ";
constexpr char cannotOpen[] = "Cannot Open Registry Entry:  ";
constexpr char separator[] = "\\";

struct RootName {
    const char* abbreviated;
    const char* full;
    HKEY key;
};

const RootName rootNames[] = {
    {"HKLM", "HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},   {"HKCU", "HKEY_CURRENT_USER", HKEY_CURRENT_USER},
    {"HKCR", "HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},     {"HKU", "HKEY_USERS", HKEY_USERS},
    {"HKCC", "HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},
};

[[noreturn]] void ThrowReport(const char* condition, const UtilsString& path, int line = __builtin_LINE()) {
    const DWORD error = ::GetLastError();
    UtilsString text(condition);
    text.Append("; value:  ");
    text.Append(path.c_str());
    throw std_exception(text, sourceFile, reportType, static_cast<DWORD>(line), error, 1);
}

}  // namespace

UtilsRegistry::UtilsRegistry(const UtilsString& path, int create, int) {
    if (path.length() == 0) {
        ThrowInvalidArgument("Parameter 1 is NULL", sourceFile);
    }
    Place place;
    if (!ParseOutPath(path, place)) {
        ThrowReport("The registry path is invalid.  No Root Key designation", path);
    }
    EnterFirst(place, create, path);
}

UtilsRegistry::UtilsRegistry(HKEY root, const UtilsString& subkey, int create, int) {
    if (root == nullptr) {
        ThrowInvalidArgument("Parameter 1 is NULL", sourceFile);
    }
    Place place{root, 0, KeyNames(subkey)};
    EnterFirst(place, create, subkey);
}

UtilsRegistry::UtilsRegistry(const UtilsRegistry& other) {
    CopyData(other);
}

const UtilsRegistry& UtilsRegistry::operator=(const UtilsRegistry& other) {
    if (this != &other) {
        CopyData(other);
    }
    return *this;
}

// The key is opened through the other object's handle, because its path may no longer be valid.
void UtilsRegistry::CopyData(const UtilsRegistry& other) {
    UtilsString keyPath(other.keyPath_);
    RegistryKey key;
    if (other.current_.get() == other.root_) {
        key.Borrow(other.root_);
    } else if (other.current_ && !Succeeded(key.Open(other.current_.get(), ""))) {
        const UtilsString path = other.GetRegistryPath(1);
        ::SetLastError(static_cast<DWORD>(result_));
        ThrowReport(cannotOpen, path);
    }
    root_ = other.root_;
    current_ = std::move(key);
    querySize_ = other.querySize_;
    setSize_ = other.setSize_;
    result_ = other.result_;
    valueType_ = other.valueType_;
    longName_ = other.longName_;
    keyPath_.Swap(keyPath);
    system_ = other.system_;
}

// The exceptions report the last error, which registry calls do not set.
void UtilsRegistry::EnterFirst(Place& place, int create, const UtilsString& path) {
    if (!OpenAt(place.root, place.keyPath, create != 0, current_)) {
        ::SetLastError(static_cast<DWORD>(result_));
        ThrowReport(create != 0 ? cannotCreate : cannotOpen, path);
    }
    root_ = place.root;
    longName_ = place.longName;
    keyPath_.Swap(place.keyPath);
}

// The first field must be a root's name; the rest is the key path.
bool UtilsRegistry::ParseOutPath(const UtilsString& path, Place& place) {
    UtilsString fields;
    fields.SplitData(path, separator);
    UtilsString root(fields.GetStringNumber(0));
    root.SetCase(path.GetCase());
    for (const RootName& name : rootNames) {
        const bool full = root == name.full;
        if (full || root == name.abbreviated) {
            place.root = name.key;
            place.longName = full ? 1 : 0;
            for (DWORD i = 1; i < fields.GetNumberOfStrings(); ++i) {
                place.keyPath.Append(fields.GetStringNumber(i));
                place.keyPath.Append(separator);
            }
            return true;
        }
    }
    return false;
}

// The names of a subkey's path, each followed by a backslash.
UtilsString UtilsRegistry::KeyNames(const UtilsString& text) {
    UtilsString ended(text.c_str());
    ended.Append(separator);
    UtilsString fields;
    fields.SplitData(ended, separator);
    UtilsString names;
    for (DWORD i = 0; i < fields.GetNumberOfStrings(); ++i) {
        const UtilsString name(fields.GetStringNumber(i));
        if (name.length() != 0) {
            names.Append(name);
            names.Append(separator);
        }
    }
    return names;
}

// Without the trailing backslash, which not every Windows accepts.
std::string UtilsRegistry::SystemPath(const UtilsString& keyPath) {
    std::string path(keyPath.c_str());
    if (!path.empty()) {
        path.pop_back();
    }
    return path;
}

bool UtilsRegistry::OpenAt(HKEY base, const UtilsString& keyPath, bool create, RegistryKey& key) {
    if (keyPath.length() == 0) {
        key.Borrow(base);
        return true;
    }
    const std::string path = SystemPath(keyPath);
    return Succeeded(create ? key.Create(base, path) : key.Open(base, path));
}

int UtilsRegistry::Enter(const UtilsString& path, bool create) {
    Place place;
    if (!ParseOutPath(path, place)) {
        return 0;
    }
    RegistryKey key;
    if (!OpenAt(place.root, place.keyPath, create, key)) {
        return 0;
    }
    root_ = place.root;
    longName_ = place.longName;
    keyPath_.Swap(place.keyPath);
    current_ = std::move(key);
    return 1;
}

int UtilsRegistry::EnterBelow(const UtilsString& name, bool create) {
    const UtilsString below = KeyNames(name);
    if (!CanUse(below)) {
        return 0;
    }
    UtilsString keyPath(keyPath_);
    keyPath.Append(below);
    RegistryKey key;
    if (!OpenAt(current_.get(), below, create, key)) {
        return 0;
    }
    keyPath_.Swap(keyPath);
    current_ = std::move(key);
    return 1;
}

bool UtilsRegistry::Succeeded(LONG result) {
    result_ = result;
    return result == ERROR_SUCCESS;
}

UtilsString UtilsRegistry::GetRootPath(int form) const {
    constexpr int abbreviated = 1;
    constexpr int full = 2;
    const bool inFull = form == full || (form != abbreviated && longName_ != 0);
    for (const RootName& name : rootNames) {
        if (name.key == root_) {
            return UtilsString(inFull ? name.full : name.abbreviated);
        }
    }
    return UtilsString("");
}

UtilsString UtilsRegistry::GetRegistryPath(int withRoot) const {
    if (withRoot == 0) {
        return keyPath_;
    }
    UtilsString path(GetRootPath(0));
    path.Append(separator);
    path.Append(keyPath_);
    return path;
}

}  // namespace UTILS
