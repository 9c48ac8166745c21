#pragma once
#include <windows.h>

#include <new>

namespace UTILS {

// After a call of the system that failed: throws std::bad_alloc when it was for want of memory. For calls
// whose other failures say something of a file or medium, such as its end, which is then passed over.
inline void RequireMemory(DWORD error = ::GetLastError()) {
    if (error == ERROR_NOT_ENOUGH_MEMORY) {
        throw std::bad_alloc();
    }
}

}  // namespace UTILS
