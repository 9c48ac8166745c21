#pragma once
#include <windows.h>

#include <optional>
#include <string>

#include "tools/common/exit_code.h"
#include "tools/emergency_disk/commands.h"

// Diskette errors as reported to the user.

namespace tools::emergency_disk {

// A text about a diskette, preceded by its name.
std::string about(const Target& target, const std::string& text);

// The exit code for the Windows error code of a transfer: writeProtected, noDiskette, refused (the medium is
// not formatted) or mediumError; `otherwise` when the medium is not the cause.
ExitCode codeOf(DWORD error, ExitCode otherwise);

// The same as a sentence; `sector` is the sector concerned, where known.
Problem transferProblem(DWORD error, std::optional<DWORD> sector = {});

}  // namespace tools::emergency_disk
