#pragma once
#include "minwindef.h"

HANDLE WINAPI GetCurrentProcess();
HANDLE WINAPI GetCurrentThread();
DWORD WINAPI GetCurrentThreadId();
BOOL WINAPI OpenThreadToken(HANDLE thread, DWORD access, BOOL openAsSelf, PHANDLE token);
BOOL WINAPI OpenProcessToken(HANDLE process, DWORD access, PHANDLE token);
