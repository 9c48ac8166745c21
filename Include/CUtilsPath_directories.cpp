#include <windows.h>

#include "CUtilsPath.h"

namespace UTILS {
namespace {

using DirectoryBuffer = char[MAX_PATH];

// A call returns the length without the zero, or the required size if the buffer is too small.
const char* WhenWhole(const DirectoryBuffer& buffer, DWORD length) {
    return length != 0 && length < MAX_PATH ? buffer : nullptr;
}

}  // namespace

const char* CUtilsPath::GetTempDir() {
    static DirectoryBuffer buffer;
    return WhenWhole(buffer, ::GetTempPathA(MAX_PATH, buffer));
}

const char* CUtilsPath::GetWindowsDir() {
    static DirectoryBuffer buffer;
    return WhenWhole(buffer, ::GetWindowsDirectoryA(buffer, MAX_PATH));
}

const char* CUtilsPath::GetSystemDir() {
    static DirectoryBuffer buffer;
    return WhenWhole(buffer, ::GetSystemDirectoryA(buffer, MAX_PATH));
}

const char* CUtilsPath::GetCurrentDir() {
    static DirectoryBuffer buffer;
    return WhenWhole(buffer, ::GetCurrentDirectoryA(MAX_PATH, buffer));
}

UtilsString CUtilsPath::Copied(const char* directory) {
    return UtilsString(directory != nullptr ? directory : "");
}

int CUtilsPath::SetCurrentDir() const {
    return !registryFlag_ && path_.length() != 0 && ::SetCurrentDirectoryA(SystemName().c_str()) ? 1 : 0;
}

}  // namespace UTILS
