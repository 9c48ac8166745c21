#pragma once
#include "winlayer/windows/window.h"

namespace winlayer {

// SetWindowPos: moves, sizes, stacks, shows or hides, and sends the matching messages. False if the window
// does not exist (any more).
bool setPosition(HWND window, HWND after, int x, int y, int width, int height, UINT flags);
// ShowWindow; returns whether the window was visible.
bool showWindow(HWND window, int command);
// EnableWindow; returns whether the window was disabled.
bool enableWindow(HWND window, bool enable);

// Whether the window's size is limited, and its limits according to WM_GETMINMAXINFO.
bool hasSizeLimits(const Window& window);
MINMAXINFO sizeLimits(const Window& window);

// Send WM_MOVE and WM_SIZE with the window's position and size.
void sendMoved(const Window& window);
void sendSized(const Window& window);

// More flags of WINDOWPOS, which callers cannot set: the client area has kept its position, or its size.
inline constexpr UINT positionKept = 0x1000;
inline constexpr UINT sizeKept = 0x0800;

}  // namespace winlayer
