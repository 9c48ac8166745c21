#pragma once
#include "minwindef.h"

inline constexpr UINT SEM_FAILCRITICALERRORS = 0x0001;
inline constexpr UINT SEM_NOOPENFILEERRORBOX = 0x8000;

DWORD WINAPI GetLastError();
void WINAPI SetLastError(DWORD code);
UINT WINAPI SetErrorMode(UINT mode);
