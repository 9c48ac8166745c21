#include <windows.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "CUtilsPath.h"
#include "diskio.h"
#include "path_text.h"

namespace UTILS {
namespace {

// 0, or the system's error code.
DWORD CreateLevel(std::string_view directory) {
    return ::CreateDirectoryA(path_text::ForSystem(directory).c_str(), nullptr) ? 0 : ::GetLastError();
}

bool IsThere(DWORD error) {
    return error == 0 || error == ERROR_ALREADY_EXISTS;
}

// Climbs to the first ancestor that exists or can be created, then creates every level down to the directory.
int CreateFromAncestor(std::string_view directory) {
    std::vector<std::string_view> missing;
    DWORD error = ERROR_PATH_NOT_FOUND;
    while (error == ERROR_PATH_NOT_FOUND) {
        missing.push_back(directory);
        directory = path_text::Parent(directory);
        if (directory.empty()) {
            return 0;
        }
        error = CreateLevel(directory);
    }
    for (; IsThere(error) && !missing.empty(); missing.pop_back()) {
        error = CreateLevel(missing.back());
    }
    return IsThere(error) ? 1 : 0;
}

// Whether a directory is a link. One whose attributes cannot be read is left alone like a link.
bool IsLink(const std::string& directory) {
    return (::GetFileAttributesA(directory.c_str()) & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

using Directories = std::set<std::string, std::less<>>;

bool LiesBelow(const Directories& directories, std::string_view path) {
    std::size_t end = directories.empty() ? std::string_view::npos : path.rfind('\\');
    while (end != std::string_view::npos && end != 0) {
        if (directories.find(path.substr(0, end)) != directories.end()) return true;
        end = path.rfind('\\', end - 1);
    }
    return false;
}

}  // namespace

int CUtilsPath::CreateDirectory(int flag) {
    if (registryFlag_) {
        return CreateKey();
    }
    const bool own = flag == 0 && !IsAFile();
    const std::string_view directory = own ? Text() : path_text::Parent(Text());
    if (directory.empty()) {
        return 0;
    }
    return CreateLevel(directory) == ERROR_PATH_NOT_FOUND ? CreateFromAncestor(directory) : 1;
}

int CUtilsPath::DeleteDir() {
    if (!*this) {
        return Refuse(null_path);
    }
    if (registryFlag_) {
        return DeleteKey();
    }
    if (IsAFile()) {
        DiskIO().Delete(path_.c_str(), 1);
        fileFlag_ = 0;
        totalSize_ = 0;
        return 1;
    }
    if (!IsADir()) {
        return 0;
    }
    if (!IsLink(SystemName())) {
        if (totalFiles_ == 0 && totalSubDirs_ == 0 && !WalkFiles("*.*", Links::AreLeaves)) {
            return 0;
        }
        DeleteListed();
    }
    DiskIO().DeleteDir(SystemName().c_str(), scanReadOnly_);
    LeaveToParent();
    return 1;
}

// A directory precedes everything below it, in walk order and in ascending order. Entries that an earlier
// walk found through a link are elsewhere and stay.
void CUtilsPath::DeleteListed() {
    Directories links;
    for (DWORD index = 0; index < directories_.GetNumberOfStrings(); ++index) {
        const char* directory = directories_.Retrieve(index);
        if (!LiesBelow(links, directory) && IsLink(directory)) links.insert(directory);
    }
    DiskIO files;
    for (DWORD index = 0; index < files_.GetNumberOfStrings(); ++index) {
        const char* file = files_.Retrieve(index);
        if (!LiesBelow(links, file)) files.Delete(file, scanReadOnly_);
    }
    for (DWORD index = directories_.GetNumberOfStrings(); index > 0; --index) {
        const char* directory = directories_.Retrieve(index - 1);
        if (!LiesBelow(links, directory)) files.DeleteDir(directory, scanReadOnly_);
    }
}

void CUtilsPath::LeaveToParent() {
    const std::string parent(path_text::Parent(Text()));
    if (!parent.empty()) {
        SetPath(parent);
    }
}

}  // namespace UTILS
