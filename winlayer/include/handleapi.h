#pragma once
#include "minwindef.h"

BOOL WINAPI CloseHandle(HANDLE object);
BOOL WINAPI DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, LPHANDLE target,
                            DWORD access, BOOL inherit, DWORD options);
