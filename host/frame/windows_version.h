#pragma once
#include <string>

namespace host {

// The warning about the Windows version in use, 8-bit; empty when components support it.
std::string warningOfUnknownWindows();

}  // namespace host
