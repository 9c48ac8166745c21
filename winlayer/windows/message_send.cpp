#include "winlayer/windows/message_send.h"

#include "winlayer/base/last_error.h"
#include "winlayer/windows/message_queue.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {

// A procedure that runs out of memory fails the message, or the creation of its window.
LRESULT callProcedure(WNDPROC procedure, const Window& window, UINT message, WPARAM wParam,
                      LPARAM lParam) try {
    return procedure != nullptr ? procedure(window.handle, message, wParam, lParam) : 0;
} catch (const std::bad_alloc&) {
    return outOfMemory(LRESULT{message == WM_CREATE ? -1 : 0});
}

// Keeps the window object alive while its procedure runs, which may destroy the window.
LRESULT sendMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto target = findWindowOrSetLastError(window);
    if (target == nullptr) {
        return 0;
    }
    if (target->thread != GetCurrentThreadId()) {
        return failed(ERROR_ACCESS_DENIED);
    }
    return callProcedure(target->procedure, *target, message, wParam, lParam);
}

LRESULT sendText(HWND window, UINT message, WPARAM wParam, const char* text) {
    return sendMessage(window, message, wParam, reinterpret_cast<LPARAM>(text));
}

bool postMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto target = findWindowOrSetLastError(window);
    if (target == nullptr) {
        return false;
    }
    MessageQueues::current().post(target->thread,
                                  {window, message, wParam, lParam, GetTickCount(), windows().cursor});
    if (target->thread != GetCurrentThreadId()) {
        windows().peer().wake();
    }
    return true;
}

std::string textOf(HWND window) {
    std::string text(static_cast<std::size_t>(sendMessage(window, WM_GETTEXTLENGTH)) + 1, '\0');
    const LRESULT length =
        sendMessage(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

}  // namespace winlayer
