#include "tools/common/names.h"

#include <windows.h>

#include <vector>

#include "tools/common/exit_code.h"

namespace tools {

std::string converted(std::string_view text, unsigned from, unsigned to) {
    std::vector<WCHAR> wide(text.size() + 1);
    const int units = MultiByteToWideChar(from, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                          static_cast<int>(wide.size()));
    std::string result(text.size() * 4 + 1, '\0');
    result.resize(static_cast<std::size_t>(WideCharToMultiByte(
        to, 0, wide.data(), units, result.data(), static_cast<int>(result.size()), nullptr, nullptr)));
    return result;
}

std::string utf8(std::string_view ansi) {
    return converted(ansi, CP_ACP, CP_UTF8);
}

// Older Windows reports neither invalid UTF-8 nor a replacement by a similar letter, so the result is
// converted back and compared.
std::string ansi(std::string_view text) {
    std::string result = converted(text, CP_UTF8, CP_ACP);
    if (utf8(result) != text) {
        throw Problem(ExitCode::usage,
                      "'" + std::string(text) + "' has a character outside the ANSI code page");
    }
    return result;
}

WindowsFile windowsFile(const Path& host) {
    const std::string path = windowsPath(host);
    const std::size_t slash = path.rfind('\\');
    const bool root = slash != std::string::npos && slash > 0 && path[slash - 1] == ':';
    return {path.substr(0, root ? slash + 1 : slash), path.substr(slash + 1)};
}

}  // namespace tools
