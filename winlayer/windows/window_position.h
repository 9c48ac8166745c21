#pragma once
#include "winlayer/windows/window.h"

namespace winlayer {

// SetWindowPos: moves, sizes, stacks, shows or hides, and sends the messages that belong to it. False for
// what is no window (any more).
bool setPosition(HWND window, HWND after, int x, int y, int width, int height, UINT flags);
// ShowWindow; gives whether the window was visible.
bool showWindow(HWND window, int command);
// EnableWindow; gives whether the window was disabled.
bool enableWindow(HWND window, bool enable);

// Whether the window's size has limits, and those that it answers WM_GETMINMAXINFO with.
bool hasSizeLimits(const Window& window);
MINMAXINFO sizeLimits(const Window& window);

// WM_MOVE and WM_SIZE with the window's place and size.
void sendMoved(const Window& window);
void sendSized(const Window& window);

// Flags of WINDOWPOS beside those that a caller can give: the client area stayed where, or as large as, it
// was.
inline constexpr UINT positionKept = 0x1000;
inline constexpr UINT sizeKept = 0x0800;

}  // namespace winlayer
