#pragma once
#include <windows.h>

class ComponentUI;

// The functions that the library exports by name. No exception leaves them.
extern "C" {

// Opens the component's user interface in a host's wizard frame, the product page first. Result: a handle for
// DestroyComponentUI; 0 when memory runs out. `reserved` is not used.
DWORD_PTR WINAPI CreateComponentUI(HWND frame, DWORD reserved);
// There is no user interface for settings. Result: 0.
DWORD_PTR WINAPI CreateConfigUI(DWORD, DWORD);
// Closes a user interface; null does nothing. Called while a page works (by a message that it dispatched), it
// destroys the windows at once; the library must stay loaded until that work has returned. Result: 1.
BOOL WINAPI DestroyComponentUI(ComponentUI* ui, DWORD reserved);

// Add the component to the host's property store, and remove it again. Result: always 0.
HRESULT WINAPI DllRegisterServer();
HRESULT WINAPI DllUnregisterServer();
}

// The library was loaded or is being unloaded. processEnds: other libraries may be unloaded already, so the
// host's module is left alone.
void AttachLibrary(HINSTANCE module);
void DetachLibrary(bool processEnds);
