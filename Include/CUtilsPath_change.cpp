#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "CUtilsPath.h"
#include "diskio.h"
#include "path_text.h"

namespace UTILS {
namespace {

// 0, or the system's reason.
DWORD CreateLevel(std::string_view directory) {
    return ::CreateDirectoryA(path_text::ForSystem(directory).c_str(), nullptr) ? 0 : ::GetLastError();
}

bool IsThere(DWORD error) {
    return error == 0 || error == ERROR_ALREADY_EXISTS;
}

// Climbs from a directory that lacks an ancestor to the first level that is there or can be made, then
// creates every level down to the directory.
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
    if (!IsADir() || (totalFiles_ == 0 && totalSubDirs_ == 0 && !Search())) {
        return 0;
    }
    DeleteListed();
    LeaveToParent();
    return 1;
}

// A directory stands in front of all that lies below it, in walk order as in ascending order.
void CUtilsPath::DeleteListed() {
    DiskIO files;
    for (DWORD index = 0; index < files_.GetNumberOfStrings(); ++index) {
        files.Delete(files_.Retrieve(index), scanReadOnly_);
    }
    for (DWORD index = directories_.GetNumberOfStrings(); index > 0; --index) {
        files.DeleteDir(directories_.Retrieve(index - 1), scanReadOnly_);
    }
    files.DeleteDir(SystemName().c_str(), scanReadOnly_);
}

void CUtilsPath::LeaveToParent() {
    const std::string parent(path_text::Parent(Text()));
    if (!parent.empty()) {
        SetPath(parent);
    }
}

}  // namespace UTILS
