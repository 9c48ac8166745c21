#pragma once
#include "winlayer/windows/window.h"

namespace winlayer {

// Positions of windows, in pixels.

// The widths of a window's border and caption on each side.
RECT borders(DWORD style, DWORD exStyle, bool menu = false);

SIZE clientSize(const Window& window);
// The top left corner of the window, or of its client area, on the screen.
POINT windowOrigin(const Window& window);
POINT clientOrigin(const Window& window);

inline LONG widthOf(const RECT& rectangle) {
    return rectangle.right - rectangle.left;
}
inline LONG heightOf(const RECT& rectangle) {
    return rectangle.bottom - rectangle.top;
}

}  // namespace winlayer
