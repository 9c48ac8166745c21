#pragma once
#include <windows.h>

namespace qxdlgsup {

// Sees the page's messages before the page does: has the frame lay the page out before it is shown, and
// notifies the frame when the page's window is destroyed. No effect on a subclassed page.
void subclassPage(HWND page);

}  // namespace qxdlgsup
