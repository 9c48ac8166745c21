#pragma once
#include "fileapi.h"

BOOL WINAPI DeviceIoControl(HANDLE device, DWORD code, LPVOID in, DWORD inSize, LPVOID out, DWORD outSize,
                            LPDWORD returned, LPOVERLAPPED overlapped);
BOOL WINAPI GetOverlappedResult(HANDLE file, LPOVERLAPPED overlapped, LPDWORD transferred, BOOL wait);
