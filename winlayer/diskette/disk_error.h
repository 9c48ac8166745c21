#pragma once
#include "winlayer/include/windows.h"

namespace winlayer {

// Thrown inside the volume; the drive turns it into an error code.
struct DiskError {
    DWORD code;
};

inline void require(DWORD error) {
    if (error != NO_ERROR) {
        throw DiskError{error};
    }
}

}  // namespace winlayer
