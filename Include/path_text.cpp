#include "path_text.h"

#include <algorithm>
#include <iterator>

namespace UTILS::path_text {
namespace {

std::string_view WithoutOuterSpaces(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The two leading backslashes of a network path are not trailing ones.
std::string_view WithoutEndingBackslash(std::string_view text) {
    if (text.size() > (IsNetwork(text) ? 2U : 0U) && text.back() == '\\') {
        text.remove_suffix(1);
    }
    return text;
}

// Removing a backslash may leave spaces at the end, and vice versa.
std::string_view WithoutEnds(std::string_view text) {
    for (std::size_t before = text.size() + 1; before != text.size();) {
        before = text.size();
        text = WithoutEndingBackslash(WithoutOuterSpaces(text));
    }
    return text;
}

std::string WithSingleBackslashes(std::string_view text) {
    std::string single;
    single.reserve(text.size());
    std::unique_copy(text.begin(), text.end(), std::back_inserter(single),
                     [](char left, char right) { return left == '\\' && right == '\\'; });
    return single;
}

bool IsLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

bool HasDrive(std::string_view path) {
    return path.size() >= 2 && IsLetter(path[0]) && path[1] == ':';
}

void Append(std::string& path, std::string_view component) {
    if (!path.empty() && path.back() != '\\') {
        path += '\\';
    }
    path.append(component);
}

// Steps above the floor are ignored.
void Climb(std::string& path, std::size_t floor) {
    const auto last = path.rfind('\\');
    path.resize(last == std::string::npos ? floor : std::max(floor, last));
}

}  // namespace

bool IsNetwork(std::string_view text) {
    return text.starts_with("\\\\");
}

bool IsBlank(std::string_view text) {
    return WithoutOuterSpaces(text).empty();
}

std::string Normalised(std::string_view text) {
    const auto inner = WithoutEnds(text);
    return IsNetwork(inner) ? std::string(inner) : WithSingleBackslashes(inner);
}

std::string_view Root(std::string_view path) {
    if (IsNetwork(path)) {
        const auto server = path.find('\\', 2);
        return server == std::string_view::npos ? path : path.substr(0, path.find('\\', server + 1));
    }
    return HasDrive(path) ? path.substr(0, 2) : path.substr(0, path.find('\\'));
}

std::string_view Parent(std::string_view path) {
    const auto last = path.rfind('\\');
    return last == std::string_view::npos || Root(path) == path ? std::string_view() : path.substr(0, last);
}

std::string ForSystem(std::string_view path) {
    return std::string(path) + (path.size() == 2 && HasDrive(path) ? "\\" : "");
}

bool HasWildcard(std::string_view text) {
    return text.find_first_of("*?") != std::string_view::npos;
}

std::string_view LastComponent(std::string_view path) {
    return path.substr(path.rfind('\\') + 1);
}

std::string Resolved(std::string_view base, std::string_view relative) {
    const auto floor = Root(base).size();
    std::string path(base);
    while (!relative.empty()) {
        const auto component = relative.substr(0, relative.find('\\'));
        if (component == "..") {
            Climb(path, floor);
        } else if (!component.empty() && component != ".") {
            Append(path, component);
        }
        relative.remove_prefix(std::min(component.size() + 1, relative.size()));
    }
    return path;
}

std::string Joined(std::string_view path, std::string_view component) {
    std::string joined(path);
    Append(joined, component.substr(std::min(component.find_first_not_of('\\'), component.size())));
    return joined;
}

std::string Relative(std::string_view path) {
    const bool absolute = IsNetwork(path) || HasDrive(path);
    return Resolved({}, absolute ? path.substr(Root(path).size()) : path);
}

std::string OnComputer(std::string_view computer, std::string_view path, std::string_view prefix) {
    std::string result("\\\\");
    result.append(computer).append("\\");
    for (auto at = path.find(prefix); !prefix.empty() && at != std::string_view::npos;
         at = path.find(prefix)) {
        result.append(path.substr(0, at));
        path.remove_prefix(at + prefix.size());
    }
    return result.append(path);
}

NameParts SplitAtDot(std::string_view name, bool atFirst) {
    const auto dot = atFirst ? name.find('.') : name.rfind('.');
    if (dot == std::string_view::npos) {
        return {name, {}};
    }
    return {name.substr(0, dot), name.substr(dot + 1)};
}

}  // namespace UTILS::path_text
