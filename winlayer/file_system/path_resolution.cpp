#include "winlayer/file_system/path_resolution.h"

#include <algorithm>
#include <array>

#include "winlayer/include/winerror.h"

namespace winlayer {

namespace {

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool isLetter(char c) {
    return upper(c) >= 'A' && upper(c) <= 'Z';
}

// A table, because every character of every path and folder entry is checked.
constexpr auto isNameCharacter = [] {
    std::array<bool, 256> allowed{};
    std::fill(allowed.begin() + 0x20, allowed.end(), true);
    for (const char c : std::string_view("<>:\"|?*/\\")) {
        allowed[static_cast<unsigned char>(c)] = false;
    }
    return allowed;
}();

bool hasOnlyNameCharacters(std::string_view element) {
    return std::all_of(element.begin(), element.end(),
                       [](char c) { return isNameCharacter[static_cast<unsigned char>(c)]; });
}

bool equalsWithoutCase(std::string_view text, std::string_view upperCase) {
    return text.size() == upperCase.size() && std::equal(text.begin(), text.end(), upperCase.begin(),
                                                         [](char a, char b) { return upper(a) == b; });
}

// NUL, CON, PRN, AUX, COM1 to COM9 and LPT1 to LPT9 are devices in every directory and with any extension.
bool isDeviceName(std::string_view element) {
    std::string_view base = element.substr(0, element.find('.'));
    while (!base.empty() && base.back() == ' ') {
        base.remove_suffix(1);
    }
    constexpr std::array<std::string_view, 4> three = {"NUL", "CON", "PRN", "AUX"};
    if (base.size() == 3) {
        return std::any_of(three.begin(), three.end(),
                           [&](std::string_view name) { return equalsWithoutCase(base, name); });
    }
    return base.size() == 4 && base[3] >= '1' && base[3] <= '9' &&
           (equalsWithoutCase(base.substr(0, 3), "COM") || equalsWithoutCase(base.substr(0, 3), "LPT"));
}

std::string_view trimEnd(std::string_view element, std::string_view characters) {
    const std::size_t last = element.find_last_not_of(characters);
    return element.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

void stepUp(std::string& below) {
    const std::size_t separator = below.rfind('\\');
    below.erase(separator == std::string::npos ? 0 : separator);
}

DWORD appendElement(std::string_view element, bool last, std::string& below) {
    if (element == "..") {
        stepUp(below);
        return 0;
    }
    element = trimEnd(element, last ? ". " : ".");
    if (element.empty()) {
        return 0;
    }
    if (!hasOnlyNameCharacters(element) || isDeviceName(element)) {
        return ERROR_INVALID_NAME;
    }
    if (!below.empty()) {
        below += '\\';
    }
    below += element;
    return 0;
}

DWORD appendElements(std::string_view rest, std::string& below) {
    while (!rest.empty()) {
        const std::size_t length =
            static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), isSeparator) - rest.begin());
        const bool last = rest.find_first_not_of("\\/", length) == std::string_view::npos;
        if (const DWORD error = appendElement(rest.substr(0, length), last, below); error != 0) {
            return error;
        }
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    return 0;
}

}  // namespace

DWORD resolvePath(std::string_view path, std::string_view currentDirectory, ResolvedPath& resolved) {
    if (path.empty()) {
        return ERROR_PATH_NOT_FOUND;
    }
    if (path.size() >= 2 && isSeparator(path[0]) && isSeparator(path[1])) {
        return ERROR_BAD_NETPATH;
    }
    const char currentLetter = upper(currentDirectory[0]);
    resolved.letter = currentLetter;
    if (path.size() >= 2 && path[1] == ':') {
        if (!isLetter(path[0])) {
            return ERROR_INVALID_NAME;
        }
        resolved.letter = upper(path[0]);
        path.remove_prefix(2);
    }
    // Only the current drive has a current directory; on any other, "X:name" starts at the root.
    resolved.below.clear();
    const bool absolute = !path.empty() && isSeparator(path[0]);
    if (!absolute && resolved.letter == currentLetter && currentDirectory.size() > 3) {
        resolved.below = currentDirectory.substr(3);
    }
    return appendElements(path, resolved.below);
}

bool isWindowsName(std::string_view name) {
    return hasOnlyNameCharacters(name) && name.back() != '.' && name.back() != ' ';
}

}  // namespace winlayer
