#pragma once
#include "minwindef.h"

inline constexpr UINT PM_NOREMOVE = 0;
inline constexpr UINT PM_REMOVE = 1;

struct POINT {
    LONG x;
    LONG y;
};
struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

// Delivers pending sent messages of the calling thread, then reports (and with PM_REMOVE takes) the first
// posted one.
BOOL WINAPI PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT flags);
BOOL WINAPI PostThreadMessageA(DWORD thread, UINT message, WPARAM wParam, LPARAM lParam);

int WINAPI LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int size);
