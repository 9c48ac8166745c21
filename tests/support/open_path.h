#pragma once
#include <windows.h>

#include <string>

// Opens what a path names, shared with readers and writers unless told otherwise.
inline HANDLE openPath(const std::string& path, DWORD access = GENERIC_READ,
                       DWORD disposition = OPEN_EXISTING, DWORD flags = FILE_ATTRIBUTE_NORMAL,
                       DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE) {
    return CreateFileA(path.c_str(), access, sharing, nullptr, disposition, flags, nullptr);
}

// The error with which that fails; 0 when it does not, and all is closed again.
template <class... Wishes>
DWORD errorOfOpen(const std::string& path, Wishes... wishes) {
    const HANDLE file = openPath(path, wishes...);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0 ? 0 : GetLastError();
}
