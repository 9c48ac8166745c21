#pragma once
#include <windows.h>

#include <string>

namespace qxdlgsup {

// The text of a topic, or a text that says that there is none; 8-bit.
std::string helpText(DWORD topic);
// Shows a text until the user closes the window; the owner is disabled meanwhile.
void showHelp(HWND owner, const std::string& text);

}  // namespace qxdlgsup
