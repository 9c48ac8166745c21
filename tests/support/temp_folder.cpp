#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>

namespace {

std::string temporaryDirectory() {
    std::array<char, MAX_PATH + 1> buffer{};
    const DWORD length = GetTempPathA(static_cast<DWORD>(buffer.size()), buffer.data());
    return std::string(buffer.data(), length);
}

// Makes a folder under a name that is not taken yet.
std::string makeFolder() {
    static std::atomic<unsigned> counter{0};
    const std::string start = temporaryDirectory() + "test-" + std::to_string(GetCurrentThreadId()) + "-";
    for (int attempt = 0; attempt < 10'000; ++attempt) {
        const std::string path = start + std::to_string(++counter);
        if (CreateDirectoryA(path.c_str(), nullptr) != 0) {
            return path;
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS) {
            break;
        }
    }
    ADD_FAILURE() << "no folder below " << start << ": error " << GetLastError();
    return start + "none";
}

void check(BOOL done, const char* what, const std::string& path) {
    if (done == 0) {
        ADD_FAILURE() << "cannot " << what << " " << path << ": error " << GetLastError();
    }
}

void removeTree(const std::string& folder) {
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA((folder + "\\*").c_str(), &entry);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more != 0; more = FindNextFileA(search, &entry)) {
        const std::string name = entry.cFileName;
        const std::string path = folder + "\\" + name;
        if (name == "." || name == "..") {
            continue;
        }
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
            check(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL), "make writable", path);
        }
        const bool isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            isLink ? check(RemoveDirectoryA(path.c_str()), "remove", path) : removeTree(path);
        } else {
            check(DeleteFileA(path.c_str()), "delete", path);
        }
    }
    FindClose(search);
    check(RemoveDirectoryA(folder.c_str()), "remove", folder);
}

}  // namespace

TempFolder::TempFolder() : path_(makeFolder()) {}

TempFolder::~TempFolder() {
    removeTree(path_);
}

std::string TempFolder::file(const std::string& name, const std::string& content) const {
    const std::string path = *this / name;
    writeFile(path, content);
    return path;
}

std::string TempFolder::directory(const std::string& name) const {
    const std::string path = *this / name;
    check(CreateDirectoryA(path.c_str(), nullptr), "make", path);
    return path;
}

std::string readFile(const std::string& path) {
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        ADD_FAILURE() << "cannot open " << path << ": error " << GetLastError();
        return {};
    }
    std::string content;
    std::array<char, 65536> buffer;
    DWORD count = 0;
    do {
        check(ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr), "read",
              path);
        content.append(buffer.data(), count);
    } while (count > 0);
    CloseHandle(file);
    return content;
}

void writeFile(const std::string& path, const std::string& content) {
    const HANDLE file =
        CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        ADD_FAILURE() << "cannot create " << path << ": error " << GetLastError();
        return;
    }
    DWORD count = 0;
    check(WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &count, nullptr), "write",
          path);
    EXPECT_EQ(count, content.size());
    CloseHandle(file);
}

bool exists(const std::string& path) {
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}
