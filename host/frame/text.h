#pragma once
#include <windows.h>

#include <string>

namespace host {

// Converts between the 8-bit text of windows and the UTF-8 of the console. A character that cannot be
// represented is replaced as the system chooses.
std::string utf8(const std::string& ansi);
// A window's text, 8-bit.
std::string windowText(HWND window);
// A string resource of the program; 8-bit, empty when there is none with that number.
std::string resourceString(UINT id);
// UTF-8 on one line: line breaks become "\n".
std::string oneLine(const std::string& ansi);

}  // namespace host
