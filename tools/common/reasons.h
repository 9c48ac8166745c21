#pragma once
#include <windows.h>

#include <exception>
#include <string>

#include "tools/common/host_path.h"

namespace tools {

// Why something failed, in words for a person (UTF-8, no trailing full stop).

// The system's sentence for a Windows error code, with the code.
std::string errorText(DWORD error);
// What a library has thrown: the error's sentence where it carries one, and its condition.
std::string reasonOf(const std::exception& fault);

// Throws Problem(failure) when a folder's disk has no room for even one more step of a copy: the libraries
// report a copy that failed, but not why.
void blameFullDisk(const Path& folder);

}  // namespace tools
