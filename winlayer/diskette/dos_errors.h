#pragma once
#include "winlayer/include/windows.h"

// What the MS-DOS services report for a Windows error of the drive.

namespace winlayer {

// AX of INT 25h and 26h: the controller's status above, the device driver's error code below.
WORD absoluteDiskError(DWORD windowsError);
// AH of INT 13h.
BYTE biosDiskError(DWORD windowsError);

}  // namespace winlayer
