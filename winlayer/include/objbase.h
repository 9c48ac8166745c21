#pragma once
#include "unknwn.h"

using OLECHAR = WCHAR;
using LPCOLESTR = const OLECHAR*;

// Where an object may run.
enum CLSCTX { CLSCTX_INPROC_SERVER = 1, CLSCTX_INPROC_HANDLER = 2, CLSCTX_LOCAL_SERVER = 4 };

// Makes a thread ready for objects: S_OK the first time, S_FALSE when it was ready. Each success is taken
// back by one CoUninitialize. `reserved` is null.
HRESULT WINAPI CoInitialize(LPVOID reserved);
void WINAPI CoUninitialize();
// Makes an object of the system, of which the layer has the shell link. The caller releases it.
HRESULT WINAPI CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID interfaceId,
                                LPVOID* object);
