#pragma once
#include "minwindef.h"
#include "winerror.h"

// The functions of MSI.DLL. Some versions of Windows lack it, so programs look them up at run time.

using MSIHANDLE = ULONG;

#define MAX_GUID_CHARS 38
#define MAX_FEATURE_CHARS 38
#define INSTALLPROPERTY_LOCALPACKAGE "LocalPackage"

enum INSTALLSTATE {
    INSTALLSTATE_MOREDATA = -3,
    INSTALLSTATE_INVALIDARG = -2,
    INSTALLSTATE_UNKNOWN = -1,
    INSTALLSTATE_BROKEN = 0,
    INSTALLSTATE_ABSENT = 2,
    INSTALLSTATE_LOCAL = 3,
};

// Codes are written to buffers of MAX_GUID_CHARS + 1 characters, each of which may be null.
UINT WINAPI MsiGetShortcutTargetA(LPCSTR shortcut, LPSTR product, LPSTR feature, LPSTR component);
// `used`, when not null, receives the length of the descriptor.
UINT WINAPI MsiDecomposeDescriptorA(LPCSTR descriptor, LPSTR product, LPSTR feature, LPSTR component,
                                    LPDWORD used);
// *size: in the buffer's characters, out the text's without its zero. The path of a registry key begins with
// the number of its root.
INSTALLSTATE WINAPI MsiGetComponentPathA(LPCSTR product, LPCSTR component, LPSTR path, LPDWORD size);
UINT WINAPI MsiGetProductInfoA(LPCSTR product, LPCSTR property, LPSTR value, LPDWORD size);
UINT WINAPI MsiCloseHandle(MSIHANDLE handle);
