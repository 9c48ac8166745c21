#pragma once
#include <string>
#include <string_view>

namespace zar {

// Why a stored name must not be created below a target directory.
enum class NameDanger {
    None,
    Empty,       // nothing to create: no element, or no last element
    ParentStep,  // an element of dots and blanks, which the system reads as "." or ".."
    Absolute,    // starts at a root or on a server
    Drive,       // a colon: a drive letter or an alternate stream
    Device,      // an element that the system treats as a device, whatever its extension
    ZeroByte,    // the system would see a shorter name than the one checked
};

// Checks a stored name (ANSI, elements separated by backslashes or forward slashes, as the system accepts
// both).
NameDanger JudgeName(std::string_view name);

// The danger in words, for a report: "is an absolute path", ...
const char* Describe(NameDanger danger);

// Why no Windows can create a file of exactly that name, although the name is safe: "has a character that no
// Windows takes", ...; null if there is no reason.
const char* NameObstacle(std::string_view name);

// `directory` and `name` with one backslash between them; doubled backslashes in the name are made single.
std::string JoinPath(std::string_view directory, std::string_view name);

// The name without its first element: "Disk\DOS\IO.SYS" gives "\DOS\IO.SYS". If the name begins with a
// backslash, the first element is between that one and the next.
std::string WithoutFirstElement(const std::string& name);

}  // namespace zar
