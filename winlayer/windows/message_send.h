#pragma once
#include <string>

#include "winlayer/windows/window.h"

namespace winlayer {

// Calls the window's procedure and returns its result; 0 for an invalid window (last error set) or one of
// another thread (ERROR_ACCESS_DENIED: only its own thread may send to it).
LRESULT sendMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
LRESULT sendText(HWND window, UINT message, WPARAM wParam, const char* text);
LRESULT callProcedure(WNDPROC procedure, const Window& window, UINT message, WPARAM wParam, LPARAM lParam);

// Posts a message to the window's thread; false for an invalid window.
bool postMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

// The text that the window returns for WM_GETTEXT.
std::string textOf(HWND window);

}  // namespace winlayer
