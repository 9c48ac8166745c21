#pragma once
#include <windows.h>

namespace qxdlgsup {

// Sees the page's messages before the page does: has the frame lay the page out before it is shown, and tells
// the frame when the page's window goes. A page that is subclassed already stays as it is.
void subclassPage(HWND page);

}  // namespace qxdlgsup
