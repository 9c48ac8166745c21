#pragma once
#include <windows.h>

#include <new>

namespace UTILS {

// After a failed system call: throws std::bad_alloc if the cause was lack of memory. For calls whose other
// failures concern a file or medium, such as its end, and are then ignored.
inline void RequireMemory(DWORD error = ::GetLastError()) {
    if (error == ERROR_NOT_ENOUGH_MEMORY) {
        throw std::bad_alloc();
    }
}

}  // namespace UTILS
