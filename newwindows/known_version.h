#pragma once
#include <windows.h>

namespace newwindows {

// Whether the libraries find a diskette drive on a Windows: 95, 98, Me, NT 3.x, NT 4.0, 2000 and XP. Any
// other they take for Windows 95, whose way to the drive it does not have.
bool isKnown(const OSVERSIONINFOA& version);

// Whether the Windows that the program runs on is known. What number an unknown one has is not asked: Windows
// gives programs as old as these a lower one than its own.
bool runsOnKnownWindows();

}  // namespace newwindows
