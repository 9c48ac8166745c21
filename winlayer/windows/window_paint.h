#pragma once
#include <functional>

#include "winlayer/windows/window.h"

namespace winlayer {

// Marks a part of the client area (null: all of it) as to be painted, on a window that can be seen, and in
// the children that lie there unless the window keeps them out (WS_CLIPCHILDREN).
void invalidate(Window& window, const RECT* area, bool erase);
// Marks the window and everything in it.
void invalidateAll(Window& window, bool erase);
// Takes all back.
void validate(Window& window);

// Sends WM_PAINT to the window, when there is something to paint, and then to its children.
void updateWindow(HWND window);
// Sends WM_ERASEBKGND when that is due; false when the window leaves it to its painting.
bool eraseBackground(Window& window, HDC context);
// Fills the whole client area with the brush of the class; false when it has none.
bool fillBackground(const Window& window, HDC context);
// The thread's topmost window with something to paint whose WM_PAINT is wanted; null when there is none.
HWND nextToPaint(DWORD thread, const std::function<bool(const MSG&)>& wanted);

// BeginPaint and EndPaint, GetDC and ReleaseDC: a context on the window's surface. Null or false for what is
// no window or no such context.
HDC beginPaint(HWND window, PAINTSTRUCT& paint);
bool endPaint(HWND window, const PAINTSTRUCT& paint);
HDC getContext(HWND window);
bool releaseContext(HWND window, HDC context);

}  // namespace winlayer
