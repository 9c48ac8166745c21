#pragma once
#include "winlayer/include/minwindef.h"

namespace winlayer {

// The pseudo handles of the caller's own process and thread. They are in no table and need not be closed.
inline HANDLE currentProcess() {
    return reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));
}
inline HANDLE currentThread() {
    return reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-2));
}

}  // namespace winlayer
