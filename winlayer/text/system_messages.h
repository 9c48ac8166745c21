#pragma once
#include <string>

#include "winlayer/include/windows.h"

namespace winlayer {

struct SystemSettings;

// The system's text for an error code, ending in CR LF, in the machine's code page. A language of 0 or a
// neutral one asks for the machine's own, and for English when the system has no texts in that.
// ERROR_MR_MID_NOT_FOUND when there is no text for the code, ERROR_RESOURCE_LANG_NOT_FOUND when there is none
// in the language asked for.
DWORD systemMessage(const SystemSettings& settings, DWORD code, DWORD language, std::string& text);

}  // namespace winlayer
