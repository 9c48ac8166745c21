#pragma once
#include <windows.h>

namespace qxdlgsup {

// This library's own module, which holds its resources.
HINSTANCE instance();

}  // namespace qxdlgsup
