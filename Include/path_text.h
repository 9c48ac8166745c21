#pragma once
#include <string>
#include <string_view>

// Operations on paths as text, without system calls. Every function takes and returns 8-bit text of any
// length, throws nothing of its own and may run on any thread. Only a backslash separates.

namespace UTILS::path_text {

// Whether the text is a network (UNC) path: it begins with two backslashes.
bool IsNetwork(std::string_view text);

// Whether the text is empty or all spaces.
bool IsBlank(std::string_view text);

// The text without leading or trailing spaces, with single backslashes and no trailing one. A network path
// keeps its inner backslashes unchanged.
std::string Normalised(std::string_view text);

// The part that has no parent: "C:" of "C:\a", "\\server\share" of "\\server\share\a", "HKLM" of "HKLM\a".
std::string_view Root(std::string_view path);

// The path without its last component; empty for a root and for a single component.
std::string_view Parent(std::string_view path);

// The path for system calls: a bare drive gets its backslash, because "C:" means its current directory.
std::string ForSystem(std::string_view path);

// Whether the text has a wildcard, so that a search for it may find other names.
bool HasWildcard(std::string_view text);

// What follows the last backslash; the whole path when it has none.
std::string_view LastComponent(std::string_view path);

// The base followed by the relative path, with "." and ".." resolved. Climbing stops at the base's root; with
// an empty base the result stays relative and never begins with "..".
std::string Resolved(std::string_view base, std::string_view relative);

// The path and a component below it with one backslash between them.
std::string Joined(std::string_view path, std::string_view component);

// A relative form of any file path: without drive or network share, without a leading backslash, "." and ".."
// resolved. Empty for a root.
std::string Relative(std::string_view path);

// "\\", the computer's name, "\" and the path, without any occurrence of `prefix`.
std::string OnComputer(std::string_view computer, std::string_view path, std::string_view prefix);

// Base and extension around the first or the last dot of a name. Without a dot all of it is the base.
struct NameParts {
    std::string_view base;
    std::string_view extension;
};
NameParts SplitAtDot(std::string_view name, bool atFirst);

}  // namespace UTILS::path_text
