#pragma once
#include <string>
#include <string_view>

#include "winlayer/include/minwindef.h"

namespace winlayer {

constexpr bool isSeparator(char c) {
    return c == '\\' || c == '/';
}
constexpr bool endsWithSeparator(std::string_view path) {
    return !path.empty() && isSeparator(path.back());
}

// Where a Windows path leads, by its text alone.
struct ResolvedPath {
    char letter = 0;    // upper case
    std::string below;  // elements separated by single backslashes; "" is the root
};

// Resolves a path against the current directory: forward slashes as backslashes, "." and "..", repeated and
// trailing separators, dots at the end of an element and dots and blanks at the end of the path dropped.
// Gives ERROR_PATH_NOT_FOUND for an empty path, ERROR_BAD_NETPATH for one that starts with two separators,
// and ERROR_INVALID_NAME for an element that no file can have (one of <>:"|?*, a control character, or the
// name of a device such as NUL, with or without an extension).
DWORD resolvePath(std::string_view path, std::string_view currentDirectory, ResolvedPath& resolved);

// Whether a file on the host has a name that a Windows path can reach.
bool isWindowsName(std::string_view name);

}  // namespace winlayer
