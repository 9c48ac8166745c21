#pragma once
#include "minwindef.h"

// Searches for a name without a folder in the program's folder, the current directory, the system and the
// Windows directory. Each LoadLibraryA needs a FreeLibrary.
HMODULE WINAPI LoadLibraryA(LPCSTR name);
BOOL WINAPI FreeLibrary(HMODULE module);
HMODULE WINAPI GetModuleHandleA(LPCSTR name);
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);

// Types and names are numbers in place of an address (MAKEINTRESOURCEA) or case-insensitive texts. A
// resource's data stays at its address as long as its module is loaded; it needs no freeing.
HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type);
HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource);
LPVOID WINAPI LockResource(HGLOBAL data);
