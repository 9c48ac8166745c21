#pragma once
#include <string>
#include <string_view>

#include "tools/common/host_path.h"

namespace tools {

// Converts between the host's UTF-8 names and the libraries' ANSI texts and Windows paths, by the system's
// code page and drives.

// Converts text between code pages; a missing character is replaced by a similar one or by "?".
std::string converted(std::string_view text, unsigned from, unsigned to);
std::string utf8(std::string_view ansi);
// Throws Problem(usage) for a character that the code page lacks.
std::string ansi(std::string_view text);
// A text (UTF-8) in the form that the system uses to compare without case.
std::string upperCase(std::string_view text);
// The Windows path of an existing host file or folder. Throws Problem: usage when no Windows path leads to
// it, failure when it cannot be examined.
std::string windowsPath(const Path& host);
// Throws like windowsPath, but only the folder must exist, not the file.
void requireWindowsPath(const Path& host);
// The same as windowsPath, but only the separators are changed: a relative path stays relative.
std::string windowsSpelling(const Path& host);
// The same for a file, as its folder and its name.
struct WindowsFile {
    std::string folder;
    std::string name;
};
WindowsFile windowsFile(const Path& host);

}  // namespace tools
