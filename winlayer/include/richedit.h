#pragma once
#include "winuser.h"

// The rich-edit control of RICHED32.DLL, whose window class is "RICHEDIT"; not part of <windows.h>.
inline constexpr UINT EM_STREAMIN = WM_USER + 73;

inline constexpr WPARAM SF_TEXT = 1;
inline constexpr WPARAM SF_RTF = 2;

// Fills up to `size` bytes and reports how many in `given`; zero bytes end the text, a result other than 0
// ends it with that error.
using EDITSTREAMCALLBACK = DWORD(CALLBACK*)(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* given);

#pragma pack(push, 4)
struct EDITSTREAM {
    DWORD_PTR dwCookie;
    DWORD dwError;
    EDITSTREAMCALLBACK pfnCallback;
};
#pragma pack(pop)
