#pragma once
#include "winlayer/windows/window.h"

namespace winlayer {

// CreateWindowExA. Null with the last error set if the class or parent is missing, there are no more handles,
// or the window itself refuses (WM_NCCREATE, WM_CREATE).
HWND createWindow(CREATESTRUCTA request);
// DestroyWindow: the window, the windows it owns and its children. False for an invalid window.
bool destroyWindow(HWND window);
// The same for a window whose creation failed; keeps the last error, which says why.
void destroyUnfinished(HWND window);
// Removes a window from all lists that contain it, without a message.
void strikeOff(const Window& window);

}  // namespace winlayer
