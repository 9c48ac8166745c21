#pragma once
#include <windows.h>

namespace newwindows {

// Whether the libraries can find a diskette drive on a Windows version: 95, 98, Me, NT 3.x, NT 4.0, 2000 and
// XP. They treat any other as Windows 95, whose access to the drive it does not have.
bool isKnown(const OSVERSIONINFOA& version);

// Whether the running Windows version is known. The number of an unknown one is not used: Windows reports a
// lower one to programs built for such old versions.
bool runsOnKnownWindows();

}  // namespace newwindows
