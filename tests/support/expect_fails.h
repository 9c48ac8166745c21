#pragma once
#include <windows.h>

#include <gtest/gtest.h>

// The error that a call of Windows left, by the result that tells whether it failed; 0 when it succeeded.
inline DWORD errorOf(BOOL done) {
    return done != 0 ? 0 : GetLastError();
}
inline DWORD errorOf(const void* result) {
    return result != nullptr && result != INVALID_HANDLE_VALUE ? 0 : GetLastError();
}
inline DWORD errorOf(FARPROC function) {
    return function != nullptr ? 0 : GetLastError();
}
// For results that are all ones when the call failed.
inline DWORD errorOf(DWORD result) {
    return result != INVALID_FILE_ATTRIBUTES ? 0 : GetLastError();
}

// The call fails and says why.
#define EXPECT_FAILS(call, error) EXPECT_EQ(errorOf(call), static_cast<DWORD>(error))
