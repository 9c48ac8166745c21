#pragma once
#include "minwindef.h"

inline constexpr UINT CP_ACP = 0;
inline constexpr UINT CP_UTF8 = 65001;
inline constexpr DWORD MB_PRECOMPOSED = 0x01;
inline constexpr DWORD MB_USEGLYPHCHARS = 0x04;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x08;
inline constexpr DWORD WC_COMPOSITECHECK = 0x0200;
inline constexpr DWORD WC_SEPCHARS = 0x0020;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x0400;

UINT WINAPI GetACP();
