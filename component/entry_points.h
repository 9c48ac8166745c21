#pragma once
#include <windows.h>

class ComponentUI;

// What the library exports by name. No exception leaves these functions.
extern "C" {

// Opens the component's user interface in a host's wizard frame, the product page first. Result: a handle,
// which is given back to DestroyComponentUI; 0 when memory has run out. `reserved` is not used.
DWORD_PTR WINAPI CreateComponentUI(HWND frame, DWORD reserved);
// There is no user interface for settings. Result: 0.
DWORD_PTR WINAPI CreateConfigUI(DWORD, DWORD);
// Closes a user interface; null does nothing. While a page is at work (a message that it dispatches calls
// this) its windows are gone on return, and the library has to stay until that work has returned. Result: 1.
BOOL WINAPI DestroyComponentUI(ComponentUI* ui, DWORD reserved);

// Enter the component in the host's property store, and take its listing out again. Result: 0 in every case.
HRESULT WINAPI DllRegisterServer();
HRESULT WINAPI DllUnregisterServer();
}

// The library came into the process or leaves it. processEnds: other libraries may be gone already, so the
// host's module is left alone.
void AttachLibrary(HINSTANCE module);
void DetachLibrary(bool processEnds);
