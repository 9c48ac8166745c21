#pragma once
#include <cstdarg>

#include "minwindef.h"

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100;
inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x0200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_STRING = 0x0400;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;
inline constexpr DWORD FORMAT_MESSAGE_ARGUMENT_ARRAY = 0x2000;

// With FORMAT_MESSAGE_ALLOCATE_BUFFER, stores the text's address at *buffer; free it with LocalFree.
DWORD WINAPI FormatMessageA(DWORD flags, LPCVOID source, DWORD messageId, DWORD languageId, LPSTR buffer,
                            DWORD size, va_list* arguments);
HLOCAL WINAPI LocalFree(HLOCAL memory);

BOOL WINAPI SetVolumeLabelA(LPCSTR root, LPCSTR label);
BOOL WINAPI GetComputerNameA(LPSTR buffer, LPDWORD size);
DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer);
BOOL WINAPI SetCurrentDirectoryA(LPCSTR path);
DWORD WINAPI GetShortPathNameA(LPCSTR path, LPSTR buffer, DWORD size);
