#pragma once
#include "unknwn.h"

using OLECHAR = WCHAR;
using LPCOLESTR = const OLECHAR*;

// Where an object may run.
enum CLSCTX { CLSCTX_INPROC_SERVER = 1, CLSCTX_INPROC_HANDLER = 2, CLSCTX_LOCAL_SERVER = 4 };

// Initialises COM for a thread: S_OK the first time, S_FALSE if it was initialised already. Each success
// needs one CoUninitialize. `reserved` is null.
HRESULT WINAPI CoInitialize(LPVOID reserved);
void WINAPI CoUninitialize();
// Creates an object of the system; the layer has only the shell link. The caller releases it.
HRESULT WINAPI CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID interfaceId,
                                LPVOID* object);
