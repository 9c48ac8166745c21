#include <windows.h>

#include <array>
#include <string>
#include <string_view>

#include "CUtilsPath.h"
#include "directory_search.h"
#include "path_text.h"

namespace UTILS {
namespace {

constexpr DWORD short_name_size = 261;

using LongPathNameFunction = DWORD(WINAPI*)(LPCSTR path, LPSTR buffer, DWORD size);

// Null on a Windows without this function.
LongPathNameFunction FindLongPathName() {
    const FARPROC found = ::GetProcAddress(::GetModuleHandleA("kernel32.dll"), "GetLongPathNameA");
    return reinterpret_cast<LongPathNameFunction>(reinterpret_cast<void (*)()>(found));
}

// Suppresses the system's error boxes, for example for a drive without a medium.
class QuietErrors {
public:
    QuietErrors() : previous_(::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX)) {}
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;
    ~QuietErrors() { ::SetErrorMode(previous_); }

private:
    UINT previous_;
};

std::string AskedLongName(LongPathNameFunction ask, const std::string& path) {
    std::string name(MAX_PATH, '\0');
    DWORD length = ask(path.c_str(), name.data(), MAX_PATH);
    if (length > name.size()) {
        name.resize(length);
        length = ask(path.c_str(), name.data(), length);
    }
    name.resize(length < name.size() ? length : 0);
    return name;
}

std::string FoundLongName(const std::string& path) {
    DirectorySearch search(path);
    return search.Advance() ? search.Entry().cFileName : std::string();
}

bool IsDriveOrShare(std::string_view path) {
    return path_text::Root(path) == path && (path_text::IsNetwork(path) || path.ends_with(':'));
}

// Replaces each component, from the last up to the drive, with the long name that a search reports.
std::string RebuiltLongName(std::string_view path) {
    if (path_text::HasWildcard(path)) {
        return {};
    }
    const QuietErrors quiet;
    std::string below;
    for (; !path.empty() && !IsDriveOrShare(path); path = path_text::Parent(path)) {
        const std::string name = FoundLongName(std::string(path));
        if (name.empty()) {
            return {};
        }
        below = below.empty() ? name : path_text::Joined(name, below);
    }
    return path.empty() ? below : path_text::Joined(path, below);
}

}  // namespace

const char* CUtilsPath::GetShortPathName() const {
    return registryFlag_ ? nullptr : GetShortPathName(SystemName());
}

const char* CUtilsPath::GetShortPathName(const UtilsString& text) {
    static std::array<char, short_name_size> buffer;
    const DWORD length = ::GetShortPathNameA(text.c_str(), buffer.data(), short_name_size);
    return length != 0 && length < short_name_size ? buffer.data() : nullptr;
}

const char* CUtilsPath::GetLongPathName() const {
    return registryFlag_ ? nullptr : GetLongPathName(path_);
}

const char* CUtilsPath::GetLongPathName(const UtilsString& text) {
    static std::string name;
    const std::string path = path_text::Normalised(text.c_str());
    if (path_text::Parent(path).empty()) {
        name = text.c_str();
        return name.c_str();
    }
    const LongPathNameFunction ask = FindLongPathName();
    name = ask != nullptr ? AskedLongName(ask, path) : RebuiltLongName(path);
    return name.empty() ? nullptr : name.c_str();
}

}  // namespace UTILS
