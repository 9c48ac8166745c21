#pragma once
#include <cstring>
#include <string>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// Copies a text to a caller's buffer. Returns its length without the zero when it fits; otherwise the size
// needed, including the zero, and leaves the buffer alone.
inline DWORD giveText(const std::string& text, char* buffer, DWORD size) {
    const auto needed = static_cast<DWORD>(text.size() + 1);
    if (buffer == nullptr || size < needed) {
        return needed;
    }
    std::memcpy(buffer, text.c_str(), needed);
    return needed - 1;
}

}  // namespace winlayer
