#pragma once
#include <string>

namespace host {

// What to tell the user of the Windows that the program runs on, 8-bit; empty when components know it.
std::string warningOfUnknownWindows();

}  // namespace host
