#pragma once
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Opens what a path names, shared with readers and writers unless told otherwise.
inline HANDLE openPath(const std::string& path, DWORD access = GENERIC_READ,
                       DWORD disposition = OPEN_EXISTING, DWORD flags = FILE_ATTRIBUTE_NORMAL,
                       DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE) {
    return CreateFileA(path.c_str(), access, sharing, nullptr, disposition, flags, nullptr);
}

// The error with which that fails; 0 when it does not, and all is closed again.
inline DWORD errorOfOpen(const std::string& path, DWORD access = GENERIC_READ,
                         DWORD disposition = OPEN_EXISTING, DWORD flags = FILE_ATTRIBUTE_NORMAL,
                         DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE) {
    const HANDLE file = openPath(path, access, disposition, flags, sharing);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0 ? 0 : GetLastError();
}

// Whether all of the text was written.
inline bool writeTo(HANDLE file, const std::string& text) {
    DWORD count = 0;
    return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &count, nullptr) != FALSE &&
           count == text.size();
}

// What one call of so many bytes delivers.
inline std::string readFrom(HANDLE file, DWORD size) {
    std::string text(size, '#');
    DWORD count = 0xBAD;
    EXPECT_TRUE(ReadFile(file, text.data(), size, &count, nullptr));
    text.resize(count);
    return text;
}

// What a search finds, in its order; the error that ended it is the last one.
inline std::vector<std::string> namesFound(const std::string& pattern) {
    std::vector<std::string> names;
    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &data);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more != 0; more = FindNextFileA(search, &data)) {
        names.emplace_back(data.cFileName);
    }
    const DWORD error = GetLastError();
    FindClose(search);
    SetLastError(error);
    return names;
}
