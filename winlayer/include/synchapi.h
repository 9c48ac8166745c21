#pragma once
#include "fileapi.h"

// A recursive lock. The fields are the layer's own.
struct CRITICAL_SECTION {
    std::uint32_t state;   // 0 free, 1 taken, 2 taken and waited for
    std::uint32_t depth;   // entries of the owner
    std::uintptr_t owner;  // identifies the owning thread; 0 when free
};
using LPCRITICAL_SECTION = CRITICAL_SECTION*;

inline constexpr DWORD INFINITE = 0xFFFFFFFF;
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;

void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section);
void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section);
void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section);
void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section);

HANDLE WINAPI CreateEventA(LPSECURITY_ATTRIBUTES security, BOOL manualReset, BOOL signalled, LPCSTR name);
BOOL WINAPI SetEvent(HANDLE event);
BOOL WINAPI ResetEvent(HANDLE event);
BOOL WINAPI PulseEvent(HANDLE event);
DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds);
void WINAPI Sleep(DWORD milliseconds);
