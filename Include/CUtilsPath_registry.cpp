#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "CUtilsPath.h"
#include "UtilsRegistry.h"
#include "path_text.h"
#include "std_exception.h"

namespace UTILS {
namespace {

// The registry class throws on failure; without the exception flag that becomes a plain 0.
template <class Work>
int Report(int exceptions, Work work) {
    try {
        return work();
    } catch (const std_exception&) {
        if (exceptions) {
            throw;
        }
        return 0;
    }
}

// Whether an enumeration reached its end instead of failing.
bool IsAtEnd(const UtilsRegistry& key) {
    return static_cast<DWORD>(key.GetLastResult()) == ERROR_NO_MORE_ITEMS;
}

}  // namespace

int CUtilsPath::WalkKeys() {
    return Report(exceptions_, [this] { return ListTree(); });
}

// Depth first, like files: a subkey is followed by everything below it.
int CUtilsPath::ListTree() {
    std::vector<std::string> pending{std::string(Text())};
    while (!pending.empty()) {
        const std::string key = std::move(pending.back());
        pending.pop_back();
        if (key != Text()) {
            ++totalSubDirs_;
            directories_.AddString(key);
        }
        std::vector<std::string> subkeys;
        if (!ListKey(key, subkeys)) {
            return 0;
        }
        pending.insert(pending.end(), subkeys.rbegin(), subkeys.rend());
    }
    return 1;
}

// Lists the key's values and returns the paths of its subkeys.
bool CUtilsPath::ListKey(const std::string& path, std::vector<std::string>& subkeys) {
    UtilsRegistry key(KeyName(path));
    UtilsString name;
    UtilsString data;
    for (DWORD index = 0; key.EnumValue(index, name, data); ++index) {
        ++totalFiles_;
        files_.AddString(path_text::Joined(path, name.c_str()));
    }
    if (!IsAtEnd(key)) {
        return false;
    }
    for (DWORD index = 0; key.EnumKey(index, name); ++index) {
        subkeys.push_back(path_text::Joined(path, name.c_str()));
    }
    return IsAtEnd(key);
}

int CUtilsPath::CreateKey() const {
    return Report(exceptions_, [this] {
        const UtilsRegistry created(KeyName(Text()), 1);
        return 1;
    });
}

int CUtilsPath::DeleteKey() {
    if (!Report(exceptions_, [this] { return UtilsRegistry(KeyName(Text())).DeleteKey(1); })) {
        return 0;
    }
    LeaveToParent();
    return 1;
}

// A root key's name ends with a backslash and is compared under the path's case flag.
UtilsString CUtilsPath::KeyName(std::string_view path) const {
    UtilsString name(path_text::Joined(path, ""));
    name.SetCase(path_.GetCase());
    return name;
}

}  // namespace UTILS
