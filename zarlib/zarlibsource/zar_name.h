#pragma once
#include <string>
#include <string_view>

namespace zar {

// Why a stored name must not be given to the file system below a target directory.
enum class NameDanger {
    None,
    Empty,       // nothing to create: no element, or no last one
    ParentStep,  // an element of dots and blanks, which the system reads as "here" or "one up"
    Absolute,    // starts at a root or on a server
    Drive,       // a colon: a drive letter or a stream of another file
    Device,      // an element that the system takes for a device, whatever its extension
    ZeroByte,    // the system would see a shorter name than was checked
};

// Judges a stored name (ANSI, elements separated by backslashes; forward slashes count as such, because the
// system takes them for separators).
NameDanger JudgeName(std::string_view name);

// The danger in words, for a report: "steps out of the target directory", ...
const char* Describe(NameDanger danger);

// What keeps every Windows from making a file of just that name although it is not dangerous: "has a
// character that no Windows takes", ...; null when nothing does.
const char* NameObstacle(std::string_view name);

// `directory` and `name` with one backslash between them, doubled backslashes of the name made single.
std::string JoinPath(std::string_view directory, std::string_view name);

// The name without its first element: "Disk\DOS\IO.SYS" gives "\DOS\IO.SYS". The first element of a name that
// begins with a backslash stands between that one and the next.
std::string WithoutFirstElement(const std::string& name);

}  // namespace zar
