#pragma once
#include "winlayer/windows/window.h"

namespace winlayer {

// CreateWindowExA. Null with the last error set when the class, the parent or a place is missing, or when the
// window itself refused (WM_NCCREATE, WM_CREATE).
HWND createWindow(CREATESTRUCTA request);
// DestroyWindow: the window, what it owns and its children. False for what is no window.
bool destroyWindow(HWND window);
// The same for one whose making failed: the last error stays the one that says why.
void destroyUnfinished(HWND window);
// Takes a window out of everything that knows of it, without a message.
void strikeOff(const Window& window);

}  // namespace winlayer
