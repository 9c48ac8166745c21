#pragma once
#include "winlayer/include/windows.h"

namespace winlayer {

// The user's input, as a peer passes it on: each call puts a message into the queue of the window that it is
// for. On the thread of the windows.

// The left mouse button and the mouse, at a point of the window's client area. It is the deepest shown and
// enabled window there that is told, or the one that has captured the mouse; nobody when a modal dialog has
// disabled the window.
void mousePress(HWND window, POINT point);
void mouseMove(HWND window, POINT point);
void mouseRelease(HWND window, POINT point);

// A key, for the window with the focus. Letters A to Z, digits, space and the control keys make their
// characters themselves (TranslateMessage); any other character comes by character(), as the keyboard's
// layout gives it. `alt`: held with the Alt key.
void keyDown(UINT virtualKey, bool alt = false);
void keyUp(UINT virtualKey, bool alt = false);
void character(char ansi, bool alt = false);

// The close button of the window's frame.
void requestClose(HWND window);

}  // namespace winlayer
