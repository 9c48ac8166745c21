#include <windows.h>

#include <deque>
#include <string>
#include <utility>

#include "CUtilsPath.h"
#include "directory_search.h"
#include "path_text.h"

namespace UTILS {
namespace {

constexpr DWORD guarded = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

struct Level {
    Level(std::string path, const std::string& pattern)
        : directory(std::move(path)), search(directory + "\\" + pattern) {}
    std::string directory;
    DirectorySearch search;
};

bool IsDots(std::string_view name) {
    return name == "." || name == "..";
}

bool IsLink(const WIN32_FIND_DATAA& entry) {
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace

int CUtilsPath::Search(const UtilsString& pattern) {
    CloseTreeSearch();
    if (!*this) {
        return Refuse(null_path);
    }
    if (registryFlag_) {
        return WalkKeys();
    }
    return IsADir() ? WalkFiles(pattern.c_str(), Links::AreFollowed) : 0;
}

// The levels are on the heap: a tree may be too deep for recursion.
int CUtilsPath::WalkFiles(const std::string& pattern, Links links) {
    std::deque<Level> levels;
    levels.emplace_back(std::string(Text()), pattern);
    while (!levels.empty()) {
        Level& level = levels.back();
        if (!level.search.Advance()) {
            if (!level.search.Ended()) {
                return Refuse(failed_search);
            }
            levels.pop_back();
        } else if (Takes(level.search.Entry())) {
            std::string path = path_text::Joined(level.directory, level.search.Entry().cFileName);
            const bool followed = links == Links::AreFollowed || !IsLink(level.search.Entry());
            if (List(level.search.Entry(), path) && followed) {
                levels.emplace_back(std::move(path), pattern);
            }
        }
    }
    return 1;
}

bool CUtilsPath::Takes(const WIN32_FIND_DATAA& entry) const {
    return !IsDots(entry.cFileName) && (scanReadOnly_ || (entry.dwFileAttributes & guarded) == 0);
}

// Adds the entry to its list; true for a directory.
bool CUtilsPath::List(const WIN32_FIND_DATAA& entry, const std::string& path) {
    const bool isDirectory = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    (isDirectory ? totalSubDirs_ : totalFiles_) += 1;
    totalSize_ += entry.nFileSizeLow;
    (isDirectory ? directories_ : files_).AddString(path);
    return isDirectory;
}

void CUtilsPath::CloseTreeSearch() {
    files_.RemoveAllStrings();
    directories_.RemoveAllStrings();
    totalSize_ = 0;
    totalFiles_ = 0;
    totalSubDirs_ = 0;
    ResetTreeSearch();
}

}  // namespace UTILS
