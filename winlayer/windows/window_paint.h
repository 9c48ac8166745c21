#pragma once
#include <functional>

#include "winlayer/windows/window.h"

namespace winlayer {

// Marks a part of the client area (null: all of it) of a visible window for painting, also in children there
// unless the window excludes them (WS_CLIPCHILDREN).
void invalidate(Window& window, const RECT* area, bool erase);
// Marks the window and everything in it.
void invalidateAll(Window& window, bool erase);
// Clears all marks.
void validate(Window& window);

// Sends WM_PAINT to the window if it needs painting, then to its children.
void updateWindow(HWND window);
// Sends WM_ERASEBKGND if due; false if the window leaves it to WM_PAINT.
bool eraseBackground(Window& window, HDC context);
// Fills the entire client area with the brush of the class; false if it has none.
bool fillBackground(const Window& window, HDC context);
// The thread's topmost window that needs painting and whose WM_PAINT is wanted; null if there is none.
HWND nextToPaint(DWORD thread, const std::function<bool(const MSG&)>& wanted);

// BeginPaint and EndPaint, GetDC and ReleaseDC: a context on the window's surface. Null or false for an
// invalid window or context.
HDC beginPaint(HWND window, PAINTSTRUCT& paint);
bool endPaint(HWND window, const PAINTSTRUCT& paint);
HDC getContext(HWND window);
bool releaseContext(HWND window, HDC context);

}  // namespace winlayer
