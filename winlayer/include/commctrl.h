#pragma once
#include "winuser.h"

// Common controls; not part of <windows.h>.
#define PROGRESS_CLASSA "msctls_progress32"

inline constexpr UINT PBM_SETRANGE = WM_USER + 1;
inline constexpr UINT PBM_SETPOS = WM_USER + 2;
inline constexpr UINT PBM_DELTAPOS = WM_USER + 3;
inline constexpr UINT PBM_SETSTEP = WM_USER + 4;
inline constexpr UINT PBM_STEPIT = WM_USER + 5;
inline constexpr UINT PBM_SETRANGE32 = WM_USER + 6;
inline constexpr UINT PBM_GETRANGE = WM_USER + 7;
inline constexpr UINT PBM_GETPOS = WM_USER + 8;

struct PBRANGE {
    int iLow;
    int iHigh;
};

// Registers the classes of common controls; before that they cannot be created.
void WINAPI InitCommonControls();
