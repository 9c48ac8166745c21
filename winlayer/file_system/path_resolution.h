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

// The result of resolving a Windows path, from its text alone.
struct ResolvedPath {
    char letter = 0;    // upper case
    std::string below;  // elements separated by single backslashes; "" is the root
};

// Resolves a path against the current directory. Forward slashes count as backslashes; "." and ".." are
// resolved; repeated and trailing separators, dots at the end of an element, and dots and blanks at the end
// of the path are dropped. Returns ERROR_PATH_NOT_FOUND for an empty path, ERROR_BAD_NETPATH for one that
// starts with two separators, and ERROR_INVALID_NAME for an element that cannot be a file name (one of
// <>:"|?*, a control character, or a device such as NUL, with or without an extension).
DWORD resolvePath(std::string_view path, std::string_view currentDirectory, ResolvedPath& resolved);

// Whether a Windows path can refer to a host file of this name.
bool isWindowsName(std::string_view name);

}  // namespace winlayer
