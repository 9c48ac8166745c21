#pragma once
#include "winlayer/include/errhandlingapi.h"

namespace winlayer {

// How a function that reports through the last error ends with a code: true for 0, which leaves the last
// error alone as Windows does.
inline bool succeeded(DWORD code) {
    if (code != 0) {
        SetLastError(code);
    }
    return code == 0;
}

}  // namespace winlayer
