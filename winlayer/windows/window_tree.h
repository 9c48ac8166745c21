#pragma once
#include <vector>

#include "winlayer/windows/window.h"

namespace winlayer {

// The window tree of the current machine.

// Null for what is no window (any more); the second form sets the last error then.
std::shared_ptr<Window> findWindow(HWND window);
std::shared_ptr<Window> findWindowOrSetLastError(HWND window);
// The same for a call of a Windows function, which is null too when the function is to fail.
std::shared_ptr<Window> windowFor(const char* function, HWND window);

// The list of handles in which the window stands, the topmost first.
std::vector<HWND>& siblingsOf(const Window& window);
// The window itself, or its outermost parent.
HWND rootOf(HWND window);
// Whether `window` lies below `parent`.
bool isBelow(HWND parent, HWND window);
// Shown, with all its parents.
bool isVisible(const Window& window);
// Enabled, with all its parents: what can take the input focus and the mouse.
bool takesInput(const Window& window);
// The child control with that identifier; null when there is none.
std::shared_ptr<Window> childById(const Window& parent, int id);

}  // namespace winlayer
