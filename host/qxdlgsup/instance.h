#pragma once
#include <windows.h>

namespace qxdlgsup {

// This library's module handle, for its resources.
HINSTANCE instance();

}  // namespace qxdlgsup
