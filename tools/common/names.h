#pragma once
#include <string>
#include <string_view>

#include "tools/common/host_path.h"

namespace tools {

// Between the host's UTF-8 names and the ANSI texts and Windows paths that the libraries take, by the
// system's code page and drives.

// Text of one code page in another; what that lacks is replaced by something that looks like it or by "?".
std::string converted(std::string_view text, unsigned from, unsigned to);
std::string utf8(std::string_view ansi);
// Throws Problem(usage) for a character that the code page has not.
std::string ansi(std::string_view text);
// A text (UTF-8) as the system compares it with others where case does not count.
std::string upperCase(std::string_view text);
// The Windows path of a host file or folder that is there. Throws Problem: usage when no Windows path leads
// to it, failure when it cannot be looked at.
std::string windowsPath(const Path& host);
// Throws as windowsPath does for a file that need not be there, though its folder must.
void requireWindowsPath(const Path& host);
// The same as windowsPath, spelt as it is but for the separators: a relative path stays one.
std::string windowsSpelling(const Path& host);
// The same for a file, as its folder and its name.
struct WindowsFile {
    std::string folder;
    std::string name;
};
WindowsFile windowsFile(const Path& host);

}  // namespace tools
