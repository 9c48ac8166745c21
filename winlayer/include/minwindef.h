#pragma once
#include <cstdint>

// Basic types with their widths on 32-bit Windows, whatever the host.

#define WINAPI
#define CALLBACK
#define FALSE 0
#define TRUE 1
#define MAX_PATH 260

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using SHORT = std::int16_t;
using DWORD = std::uint32_t;
using ULONG = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using BOOL = std::int32_t;
using CHAR = char;
using WCHAR = std::uint16_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORD64 = std::uint64_t;

using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;

using LPVOID = void*;
using LPCVOID = const void*;
using PVOID = void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using PDWORD = DWORD*;
using LPBOOL = BOOL*;
using PLONG = LONG*;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;

using ATOM = WORD;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;

// Handles are an index with a generation, never a host address, so that a stale one is recognised.
using HANDLE = void*;
using LPHANDLE = HANDLE*;
using PHANDLE = HANDLE*;
using HLOCAL = HANDLE;
using HGLOBAL = HANDLE;
using HGDIOBJ = void*;

// Distinct pointer types for these handles, as Windows declares them.
struct HINSTANCE__;
struct HWND__;
struct HKEY__;
struct HRSRC__;
struct HDC__;
struct HBITMAP__;
struct HBRUSH__;
struct HFONT__;
using HINSTANCE = HINSTANCE__*;
using HMODULE = HINSTANCE;
using HWND = HWND__*;
using HKEY = HKEY__*;
using PHKEY = HKEY*;
using HRSRC = HRSRC__*;
using HDC = HDC__*;
using HBITMAP = HBITMAP__*;
using HBRUSH = HBRUSH__*;
using HFONT = HFONT__*;

using FARPROC = INT_PTR(WINAPI*)();

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};
using PFILETIME = FILETIME*;

struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;      // 1 = January
    WORD wDayOfWeek;  // 0 = Sunday
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};

// A rectangle in pixels; the right and bottom edges lie outside it.
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;
struct SIZE {
    LONG cx;
    LONG cy;
};
using COLORREF = DWORD;

// For any integer type, as on Windows, where these are casts.
template <class Number>
constexpr WORD LOWORD(Number value) {
    return static_cast<WORD>(static_cast<DWORD_PTR>(value) & 0xFFFF);
}
template <class Number>
constexpr WORD HIWORD(Number value) {
    return static_cast<WORD>(static_cast<DWORD_PTR>(value) >> 16 & 0xFFFF);
}
constexpr BYTE LOBYTE(DWORD_PTR value) {
    return static_cast<BYTE>(value & 0xFF);
}
constexpr BYTE HIBYTE(DWORD_PTR value) {
    return static_cast<BYTE>((value >> 8) & 0xFF);
}

// A 32-bit address for a register block or packet with 32-bit addresses. On 32-bit Windows the address
// itself; here an entry of a table that holds the last 4096 addresses handed out.
ULONG PtrToUlong(const void* pointer);
// The pointer that was passed to PtrToUlong; null for a value that it never returned or has since reused.
void* ULongToPtr(ULONG address);
