#pragma once
#include <windows.h>

#include <exception>
#include <string>

#include "tools/common/host_path.h"

namespace tools {

// Reasons of failures, as text for the user (UTF-8, no trailing full stop).

// The system's message for a Windows error code, with the code.
std::string errorText(DWORD error);
// Describes a library's exception: the error's message, if it carries one, and its condition.
std::string reasonOf(const std::exception& fault);

// Throws Problem(failure) when a folder's disk lacks the space for one more step of a copy: the libraries
// report that a copy failed, but not why.
void blameFullDisk(const Path& folder);

}  // namespace tools
