#pragma once
#include "winlayer/windows/window.h"

namespace winlayer {

// Gives a window (null: none) the input focus and tells both windows. Gives the window that had it; null also
// when the window cannot take it, because it or a parent is disabled or gone.
HWND setFocus(HWND window);
// Makes a top-level window the active one; false when it cannot be.
bool activate(HWND window);
// The active window goes: its owner or the topmost window that can be active follows.
void activateAnother(HWND leaving);
// Mouse messages go to this window until it is released (null).
HWND setCapture(HWND window);

}  // namespace winlayer
