#pragma once
#include <filesystem>
#include <string>
#include <string_view>

namespace tools {

// Between the host's UTF-8 names and the ANSI texts and Windows paths that the libraries take, by the code
// page and the drives of the current machine.

std::string utf8(std::string_view ansi);
// Throws Problem(usage) for a character that the code page has not.
std::string ansi(std::string_view utf8);
// The Windows path of a host file or folder. Throws Problem(usage) likewise.
std::string windowsPath(const std::filesystem::path& host);

}  // namespace tools
