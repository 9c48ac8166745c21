#pragma once
#include "winlayer/include/minwindef.h"

namespace winlayer {

// The Windows error code for a host error number (errno); ERROR_GEN_FAILURE when there is no counterpart.
DWORD windowsError(int hostError);

}  // namespace winlayer
