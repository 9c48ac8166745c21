#pragma once
#include <cstring>
#include <string>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// How a function with a caller's buffer hands out a text: its length without the zero when it fits, otherwise
// the size that it needs, with the zero, and the buffer stays as it is.
inline DWORD giveText(const std::string& text, char* buffer, DWORD size) {
    const auto needed = static_cast<DWORD>(text.size() + 1);
    if (buffer == nullptr || size < needed) {
        return needed;
    }
    std::memcpy(buffer, text.c_str(), needed);
    return needed - 1;
}

}  // namespace winlayer
