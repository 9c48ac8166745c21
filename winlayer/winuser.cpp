#include "winlayer/include/winuser.h"

#include <algorithm>
#include <cstring>

#include "winlayer/machine.h"

using namespace winlayer;

// A window can be named only when there is one; messages are the threads' own so far.
BOOL WINAPI PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT flags) {
    if (denied(__func__)) {
        return FALSE;
    }
    if (window != nullptr) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return FALSE;
    }
    const bool remove = (flags & PM_REMOVE) != 0;
    const bool found = Machine::current().messages.peek(GetCurrentThreadId(), first, last, remove, *message);
    return found ? TRUE : FALSE;
}

BOOL WINAPI PostThreadMessageA(DWORD thread, UINT message, WPARAM wParam, LPARAM lParam) {
    if (denied(__func__)) {
        return FALSE;
    }
    Machine& machine = Machine::current();
    if (thread == GetCurrentThreadId()) {
        machine.messages.makeQueue(thread);
    }
    if (!machine.messages.hasQueue(thread)) {
        SetLastError(ERROR_INVALID_THREAD_ID);
        return FALSE;
    }
    machine.messages.post(thread, {nullptr, message, wParam, lParam, GetTickCount(), {}});
    return TRUE;
}

int WINAPI LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int size) {
    if (denied(__func__)) {
        return 0;
    }
    std::string text;
    if (buffer == nullptr || size <= 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (!Machine::current().modules.string(module, id, text)) {
        buffer[0] = 0;
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return 0;
    }
    const std::size_t copied = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), copied);
    buffer[copied] = 0;
    return static_cast<int>(copied);
}
