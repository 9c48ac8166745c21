#include "tools/emergency_disk/erasing.h"

#include <windows.h>

#include <string_view>
#include <vector>

#include "tools/common/exit_code.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"

namespace tools::emergency_disk {

namespace {

struct Entry {
    std::string name;  // full path
    bool isDirectory;
    bool isReadOnly;
};

// The entries of a directory except "." and ".."; stops at a failure with its error code.
std::vector<Entry> entriesOf(const std::string& directory, DWORD& error) {
    const std::string path = directory.back() == '\\' ? directory : directory + '\\';
    std::vector<Entry> entries;
    WIN32_FIND_DATAA found{};
    const HANDLE search = FindFirstFileA((path + "*.*").c_str(), &found);
    for (bool more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileA(search, &found) != 0) {
        const std::string_view name = found.cFileName;
        if (name == "." || name == "..") continue;
        entries.push_back({path + found.cFileName, (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                           (found.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0});
    }
    error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_NO_MORE_FILES) error = NO_ERROR;
    if (search != INVALID_HANDLE_VALUE) FindClose(search);
    return entries;
}

void refuse(const std::string& name, const std::string& why) {
    throw Problem(ExitCode::refused, utf8(name) + " cannot be deleted: " + why);
}

// The read-only attribute protects a directory; of a file it is removed first.
void requireDeletable(const Entry& entry) {
    if (GetFileAttributesA(entry.name.c_str()) == INVALID_FILE_ATTRIBUTES) {
        refuse(entry.name, errorText(GetLastError()));
    }
    if (!entry.isDirectory) return;
    if (entry.isReadOnly) refuse(entry.name, "the directory is read-only");
    requireErasable(entry.name);
}

// Tries to delete an entry again. Result: the error code.
DWORD deleteAgain(const Entry& entry) {
    const char* name = entry.name.c_str();
    const bool deleted = entry.isDirectory
                             ? RemoveDirectoryA(name) != 0
                             : SetFileAttributesA(name, FILE_ATTRIBUTE_NORMAL) && DeleteFileA(name);
    return deleted ? NO_ERROR : GetLastError();
}

}  // namespace

void requireErasable(const std::string& directory) {
    DWORD error = NO_ERROR;
    const std::vector<Entry> entries = entriesOf(directory, error);
    if (error != NO_ERROR) refuse(directory, errorText(error));
    for (const Entry& entry : entries) requireDeletable(entry);
}

std::string erasingStoppedAt(const std::string& directory) {
    DWORD error = NO_ERROR;
    const std::vector<Entry> entries = entriesOf(directory, error);
    if (entries.empty()) return {};
    const Entry& first = entries.front();
    if (first.isDirectory) {
        std::string below = erasingStoppedAt(first.name);
        if (!below.empty()) return below;
    }
    const DWORD reason = deleteAgain(first);
    return utf8(first.name) + " could not be deleted" + (reason == NO_ERROR ? "" : ": " + errorText(reason));
}

}  // namespace tools::emergency_disk
