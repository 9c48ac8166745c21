#include "zar_name.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace zar {

namespace {

constexpr bool IsSeparator(char c) {
    return c == '\\' || c == '/';
}

std::string Upper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper;
}

// A port number as the system accepts it: 1 to 9, or a superscript digit of code page 1252.
bool IsPortNumber(char c) {
    return (c >= '1' && c <= '9') || c == '\xB9' || c == '\xB2' || c == '\xB3';
}

bool NamesDevice(std::string_view element) {
    static constexpr std::array<std::string_view, 7> devices = {"NUL",    "CON",    "PRN",    "AUX",
                                                                "CLOCK$", "CONIN$", "CONOUT$"};
    // The system looks only at the part before the first dot, without trailing blanks.
    std::string stem = Upper(element.substr(0, element.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    if (std::find(devices.begin(), devices.end(), stem) != devices.end()) return true;
    const bool port = stem.starts_with("COM") || stem.starts_with("LPT");
    return stem.size() == 4 && port && IsPortNumber(stem.back());
}

constexpr std::size_t longestElement = 255;

const char* ElementObstacle(std::string_view element) {
    const auto refused = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 ||
               std::string_view("<>\"|?*").find(c) != std::string_view::npos;
    };
    if (std::any_of(element.begin(), element.end(), refused)) return "has a character that no Windows takes";
    if (element.size() > longestElement) return "has an element longer than any Windows takes";
    if (element.ends_with('.') || element.ends_with(' ')) {
        return "has an element that ends in a dot or a blank, which Windows drops";
    }
    return nullptr;
}

NameDanger JudgeElement(std::string_view element) {
    // The system drops trailing dots and blanks, so these may become "." or "..", or nothing.
    if (element.find_first_not_of(". ") == std::string_view::npos) return NameDanger::ParentStep;
    return NamesDevice(element) ? NameDanger::Device : NameDanger::None;
}

// The first verdict on an element of the name that is not `nothing`, else `nothing`.
template <class Verdict>
Verdict FirstVerdict(std::string_view name, Verdict nothing, Verdict (*judge)(std::string_view)) {
    while (!name.empty()) {
        const std::size_t length = std::min(name.size(), name.find_first_of("\\/"));
        if (length != 0) {
            const Verdict verdict = judge(name.substr(0, length));
            if (verdict != nothing) return verdict;
        }
        name.remove_prefix(std::min(name.size(), length + 1));
    }
    return nothing;
}

}  // namespace

NameDanger JudgeName(std::string_view name) {
    if (name.empty()) return NameDanger::Empty;
    if (name.find('\0') != std::string_view::npos) return NameDanger::ZeroByte;
    if (name.find(':') != std::string_view::npos) return NameDanger::Drive;
    if (std::all_of(name.begin(), name.end(), [](char c) { return IsSeparator(c) || c == ' '; })) {
        return NameDanger::Empty;
    }
    if (IsSeparator(name.front())) return NameDanger::Absolute;
    if (IsSeparator(name.back())) return NameDanger::Empty;
    return FirstVerdict(name, NameDanger::None, JudgeElement);
}

const char* NameObstacle(std::string_view name) {
    return FirstVerdict<const char*>(name, nullptr, ElementObstacle);
}

const char* Describe(NameDanger danger) {
    switch (danger) {
        case NameDanger::None:
            return "is safe";
        case NameDanger::Empty:
            return "names no file";
        case NameDanger::ParentStep:
            return "has an element of dots that may step out of the target directory";
        case NameDanger::Absolute:
            return "is an absolute path";
        case NameDanger::Drive:
            return "names a drive or stream";
        case NameDanger::Device:
            return "names a device";
        case NameDanger::ZeroByte:
            return "holds a zero byte";
    }
    return "";
}

std::string JoinPath(std::string_view directory, std::string_view name) {
    std::string path(directory);
    while (!path.empty() && path.back() == '\\') path.pop_back();
    char previous = '\\';
    if (!path.empty()) path += previous;
    for (const char c : name) {
        if (c != '\\' || previous != '\\') path += c;
        previous = c;
    }
    return path;
}

std::string WithoutFirstElement(const std::string& name) {
    const std::size_t begin = name.starts_with('\\') ? 1 : 0;
    const std::size_t end = std::min(name.size(), name.find('\\', begin));
    if (begin == end) return name;
    std::string rest = name.substr(0, begin) + name.substr(end);
    const std::size_t doubled = rest.find("\\\\");
    if (doubled != std::string::npos) rest.erase(doubled, 1);
    return rest;
}

}  // namespace zar
