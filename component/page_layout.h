#pragma once
#include <windows.h>

// Positions of controls within a page, in pixels of the page's client area.
namespace page_layout {

// Empty when there is no such control.
RECT Place(HWND page, int control);
// The height of a control's text in lines of this width; 0 when it cannot be determined.
LONG TextHeight(HWND page, int control, LONG width);
void Move(HWND page, int control, int left, int top, int width, int height, bool redraw);

}  // namespace page_layout
