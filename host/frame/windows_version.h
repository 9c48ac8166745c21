#pragma once
#include <windows.h>

#include <string>

namespace host {

// Whether components find a diskette drive on a Windows: 95, 98, Me, NT 3.x, NT 4.0, 2000 and XP. Any other
// they take for Windows 95, whose way to the drive it does not have.
bool isKnown(const OSVERSIONINFOA& version);

// What to tell the user of the Windows that the program runs on, 8-bit; empty when it is known.
std::string warningOfUnknownWindows();

}  // namespace host
