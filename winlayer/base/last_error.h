#pragma once
#include <new>

#include "winlayer/include/errhandlingapi.h"
#include "winlayer/include/winerror.h"

namespace winlayer {

// How a function that reports through the last error ends with a code: true for 0, which leaves the last
// error alone as Windows does.
inline bool succeeded(DWORD code) {
    if (code != 0) {
        SetLastError(code);
    }
    return code == 0;
}

// The failure of any kind of result: 0, FALSE, null.
struct Failure {
    template <class Result>
    operator Result() const {
        return Result{};
    }
};

// How a function ends that fails: `return failed(ERROR_...);`.
inline Failure failed(DWORD error) {
    SetLastError(error);
    return {};
}

// How a function ends that has run out of memory: the layer's callers are C's as much as C++'s, so what is
// thrown within it ends in the handler of its function-try-block.
template <class Failure>
Failure outOfMemory(Failure failure) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return failure;
}

}  // namespace winlayer
