#pragma once
#include "minwindef.h"
#include "winnt.h"

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));
inline constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
inline constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFF;
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

inline constexpr DWORD CREATE_NEW = 1;
inline constexpr DWORD CREATE_ALWAYS = 2;
inline constexpr DWORD OPEN_EXISTING = 3;
inline constexpr DWORD OPEN_ALWAYS = 4;
inline constexpr DWORD TRUNCATE_EXISTING = 5;

inline constexpr DWORD FILE_BEGIN = 0;
inline constexpr DWORD FILE_CURRENT = 1;
inline constexpr DWORD FILE_END = 2;

inline constexpr DWORD FILE_FLAG_DELETE_ON_CLOSE = 0x04000000;
inline constexpr DWORD FILE_FLAG_SEQUENTIAL_SCAN = 0x08000000;
inline constexpr DWORD FILE_FLAG_OVERLAPPED = 0x40000000;
inline constexpr DWORD FILE_FLAG_WRITE_THROUGH = 0x80000000;

inline constexpr UINT DRIVE_UNKNOWN = 0;
inline constexpr UINT DRIVE_NO_ROOT_DIR = 1;
inline constexpr UINT DRIVE_REMOVABLE = 2;
inline constexpr UINT DRIVE_FIXED = 3;
inline constexpr UINT DRIVE_REMOTE = 4;
inline constexpr UINT DRIVE_CDROM = 5;
inline constexpr UINT DRIVE_RAMDISK = 6;

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;

struct OVERLAPPED {
    ULONG_PTR Internal;
    ULONG_PTR InternalHigh;
    DWORD Offset;
    DWORD OffsetHigh;
    HANDLE hEvent;
};
using LPOVERLAPPED = OVERLAPPED*;

struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    char cFileName[MAX_PATH];
    char cAlternateFileName[14];
};
using LPWIN32_FIND_DATAA = WIN32_FIND_DATAA*;

HANDLE WINAPI CreateFileA(LPCSTR name, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD flags, HANDLE templateFile);
BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD count, LPDWORD transferred, LPOVERLAPPED overlapped);
BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD count, LPDWORD transferred, LPOVERLAPPED overlapped);
DWORD WINAPI SetFilePointer(HANDLE file, LONG distance, PLONG distanceHigh, DWORD method);
BOOL WINAPI SetEndOfFile(HANDLE file);
BOOL WINAPI FlushFileBuffers(HANDLE file);
DWORD WINAPI GetFileSize(HANDLE file, LPDWORD high);

BOOL WINAPI DeleteFileA(LPCSTR name);
BOOL WINAPI CreateDirectoryA(LPCSTR name, LPSECURITY_ATTRIBUTES security);
BOOL WINAPI RemoveDirectoryA(LPCSTR name);
DWORD WINAPI GetFileAttributesA(LPCSTR name);
BOOL WINAPI SetFileAttributesA(LPCSTR name, DWORD attributes);
HANDLE WINAPI FindFirstFileA(LPCSTR pattern, LPWIN32_FIND_DATAA data);
BOOL WINAPI FindNextFileA(HANDLE search, LPWIN32_FIND_DATAA data);
BOOL WINAPI FindClose(HANDLE search);

DWORD WINAPI GetLogicalDrives();
UINT WINAPI GetDriveTypeA(LPCSTR root);
BOOL WINAPI GetVolumeInformationA(LPCSTR root, LPSTR label, DWORD labelSize, LPDWORD serial,
                                  LPDWORD maximumComponent, LPDWORD flags, LPSTR fileSystem,
                                  DWORD fileSystemSize);
DWORD WINAPI GetTempPathA(DWORD size, LPSTR buffer);
// Looked up at run time on Windows, because Windows 95 and NT 4.0 lack it.
DWORD WINAPI GetLongPathNameA(LPCSTR path, LPSTR buffer, DWORD size);
