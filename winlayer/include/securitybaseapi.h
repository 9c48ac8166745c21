#pragma once
#include "winnt.h"

BOOL WINAPI GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID buffer, DWORD size,
                                PDWORD needed);
BOOL WINAPI AllocateAndInitializeSid(PSID_IDENTIFIER_AUTHORITY authority, BYTE count, DWORD sub0, DWORD sub1,
                                     DWORD sub2, DWORD sub3, DWORD sub4, DWORD sub5, DWORD sub6, DWORD sub7,
                                     PSID* sid);
BOOL WINAPI EqualSid(PSID first, PSID second);
PVOID WINAPI FreeSid(PSID sid);
