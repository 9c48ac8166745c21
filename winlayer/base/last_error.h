#pragma once
#include <new>

#include "winlayer/include/errhandlingapi.h"
#include "winlayer/include/winerror.h"

namespace winlayer {

// Turns an error code into the result of a function that reports through the last error. True for 0, which
// leaves the last error alone as Windows does.
inline bool succeeded(DWORD code) {
    if (code != 0) {
        SetLastError(code);
    }
    return code == 0;
}

// Converts to a failure result of any type: 0, FALSE, null.
struct Failure {
    template <class Result>
    operator Result() const {
        return Result{};
    }
};

// Sets the last error and fails: `return failed(ERROR_...);`.
inline Failure failed(DWORD error) {
    SetLastError(error);
    return {};
}

// The handler of a function-try-block. C programs call the layer as well, so no exception may leave its
// functions.
template <class Failure>
Failure outOfMemory(Failure failure) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return failure;
}

}  // namespace winlayer
