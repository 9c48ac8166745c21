#pragma once
#include <windows.h>

#include <string>

namespace host {

// Between the 8-bit text of windows and the UTF-8 of the console. A character that has no place becomes what
// the system puts there.
std::string utf8(const std::string& ansi);
// A window's text, 8-bit.
std::string windowText(HWND window);
// A string of the program's own resources; 8-bit, empty when there is none of that number.
std::string resourceString(UINT id);
// UTF-8 on one line: line breaks become "\n".
std::string oneLine(const std::string& ansi);

}  // namespace host
