#pragma once
#include "winnt.h"

BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA version);
DWORD WINAPI GetTickCount();
UINT WINAPI GetWindowsDirectoryA(LPSTR buffer, UINT size);
UINT WINAPI GetSystemDirectoryA(LPSTR buffer, UINT size);
