#include "winlayer/include/winuser.h"
#include "winlayer/base/last_error.h"

#include <algorithm>
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/modules/modules.h"

using namespace winlayer;

int WINAPI LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int size) try {
    if (denied(__func__)) {
        return 0;
    }
    std::string text;
    if (buffer == nullptr || size <= 0) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    if (!winlayer::Modules::current().string(module, id, text)) {
        buffer[0] = 0;
        return failed(ERROR_RESOURCE_NAME_NOT_FOUND);
    }
    const std::size_t copied = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), copied);
    buffer[copied] = 0;
    return static_cast<int>(copied);
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}
