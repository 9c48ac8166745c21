#pragma once
#include <string>

#include "winlayer/windows/window.h"

namespace winlayer {

// Calls the window's procedure and gives its result; 0 for what is no window (last error set), and for a
// window of another thread (ERROR_ACCESS_DENIED: only its own thread may send to it).
LRESULT sendMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
LRESULT sendText(HWND window, UINT message, WPARAM wParam, const char* text);
LRESULT callProcedure(WNDPROC procedure, const Window& window, UINT message, WPARAM wParam, LPARAM lParam);

// Puts a message into the window's queue; false for what is no window.
bool postMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

// The text as the window itself gives it out (WM_GETTEXT).
std::string textOf(HWND window);

}  // namespace winlayer
