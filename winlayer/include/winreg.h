#pragma once
#include "fileapi.h"

using REGSAM = DWORD;

inline const HKEY HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000000u));
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000001u));
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002u));
inline const HKEY HKEY_USERS = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000003u));
inline const HKEY HKEY_CURRENT_CONFIG = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000005u));

// Each returns the error code itself and leaves the last error alone.
LONG WINAPI RegOpenKeyExA(HKEY key, LPCSTR subkey, DWORD options, REGSAM access, PHKEY result);
LONG WINAPI RegCreateKeyExA(HKEY key, LPCSTR subkey, DWORD reserved, LPSTR className, DWORD options,
                            REGSAM access, const LPSECURITY_ATTRIBUTES security, PHKEY result,
                            LPDWORD disposition);
LONG WINAPI RegCloseKey(HKEY key);
LONG WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                             LPDWORD size);
LONG WINAPI RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
LONG WINAPI RegDeleteValueA(HKEY key, LPCSTR name);
// Windows NT refuses a key that has subkeys; Windows 95, 98 and Me delete these with it.
LONG WINAPI RegDeleteKeyA(HKEY key, LPCSTR subkey);
LONG WINAPI RegEnumKeyExA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved,
                          LPSTR className, LPDWORD classSize, PFILETIME lastWrite);
LONG WINAPI RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD nameSize, LPDWORD reserved, LPDWORD type,
                          LPBYTE data, LPDWORD size);
