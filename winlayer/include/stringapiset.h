#pragma once
#include "minwindef.h"

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR wide,
                               int wideSize);
int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wide, int wideLength, LPSTR text, int size,
                               LPCSTR defaultChar, LPBOOL usedDefault);
