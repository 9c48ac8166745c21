#pragma once
#include "minwindef.h"

HMODULE WINAPI GetModuleHandleA(LPCSTR name);
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);
