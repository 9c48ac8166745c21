#pragma once
#include "winlayer/include/windows.h"

// The MS-DOS error codes for a Windows error of the drive.

namespace winlayer {

// AX of INT 25h and 26h: the controller's status in AH, the device driver's error code in AL.
WORD absoluteDiskError(DWORD windowsError);
// AH of INT 13h.
BYTE biosDiskError(DWORD windowsError);

}  // namespace winlayer
