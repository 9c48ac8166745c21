#pragma once
#include "minwindef.h"

// A name without a folder is looked for in the program's folder, the current directory, the system and the
// Windows directory. Each LoadLibraryA wants a FreeLibrary.
HMODULE WINAPI LoadLibraryA(LPCSTR name);
BOOL WINAPI FreeLibrary(HMODULE module);
HMODULE WINAPI GetModuleHandleA(LPCSTR name);
DWORD WINAPI GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size);
FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name);

// Types and names are numbers in place of an address (MAKEINTRESOURCEA) or texts whose case does not matter.
// The data of a resource stays where it is as long as its module is loaded; nothing has to be given back.
HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type);
HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource);
LPVOID WINAPI LockResource(HGLOBAL data);
