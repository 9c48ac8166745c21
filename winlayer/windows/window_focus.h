#pragma once
#include "winlayer/windows/window.h"

namespace winlayer {

// Moves the input focus to a window (null: none) and notifies both windows. Returns the window that had it;
// null also if the window cannot take it, because it or a parent is disabled or it no longer exists.
HWND setFocus(HWND window);
// Activates a top-level window; false if it cannot be active.
bool activate(HWND window);
// Replaces a window that loses activation: by its owner or the topmost window that can be active.
void activateAnother(HWND leaving);
// Sends mouse messages to this window until the capture is released (null).
HWND setCapture(HWND window);

}  // namespace winlayer
