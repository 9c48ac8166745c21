#pragma once
#include <string>

#include "winlayer/include/windows.h"

namespace winlayer {

struct SystemSettings;

// The system's text for an error code, ending in CR LF, in the machine's code page. Language 0 or a neutral
// one selects the machine's own, or English when the system has no texts in it. ERROR_MR_MID_NOT_FOUND when
// the code has no text, ERROR_RESOURCE_LANG_NOT_FOUND when it has none in the requested language.
DWORD systemMessage(const SystemSettings& settings, DWORD code, DWORD language, std::string& text);

}  // namespace winlayer
