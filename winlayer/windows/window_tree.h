#pragma once
#include <vector>

#include "winlayer/windows/window.h"

namespace winlayer {

// The window tree of the current machine.

// Null if the window does not exist (any more); the second form then sets the last error.
std::shared_ptr<Window> findWindow(HWND window);
std::shared_ptr<Window> findWindowOrSetLastError(HWND window);
// The same through the call hook: null also if the fault plan fails the function.
std::shared_ptr<Window> windowFor(const char* function, HWND window);

// The list that contains the window's handle, topmost first.
std::vector<HWND>& siblingsOf(const Window& window);
// The window itself, or its outermost parent.
HWND rootOf(HWND window);
// Whether `window` is a descendant of `parent`.
bool isBelow(HWND parent, HWND window);
// Visible, and so are all its parents.
bool isVisible(const Window& window);
// Enabled, and so are all its parents: able to take the input focus and the mouse.
bool takesInput(const Window& window);
// The child control with this identifier; null if there is none.
std::shared_ptr<Window> childById(const Window& parent, int id);

}  // namespace winlayer
