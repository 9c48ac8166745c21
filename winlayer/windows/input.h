#pragma once
#include "winlayer/include/windows.h"

namespace winlayer {

// The user's input, passed on by a display backend: each call posts a message to the window that receives it.
// On the windows' thread.

// The mouse and its left button, at a point of the window's client area. The message goes to the window that
// has captured the mouse, otherwise to the deepest visible and enabled window there; to none if a modal
// dialog has disabled the window.
void mousePress(HWND window, POINT point);
void mouseMove(HWND window, POINT point);
void mouseRelease(HWND window, POINT point);

// A key, for the window with the focus. TranslateMessage makes the characters of letters A to Z, digits,
// space and the control keys; any other comes through character(), according to the keyboard layout. `alt`:
// pressed with the Alt key.
void keyDown(UINT virtualKey, bool alt = false);
void keyUp(UINT virtualKey, bool alt = false);
void character(char ansi, bool alt = false);

// The close button of the window's frame.
void requestClose(HWND window);

}  // namespace winlayer
