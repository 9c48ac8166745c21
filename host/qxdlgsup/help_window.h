#pragma once
#include <windows.h>

#include <string>

namespace qxdlgsup {

// The text of a topic, or the one that says that there is none; 8-bit.
std::string helpText(DWORD topic);
// Shows a text until the user closes the window; its owner takes no input meanwhile.
void showHelp(HWND owner, const std::string& text);

}  // namespace qxdlgsup
