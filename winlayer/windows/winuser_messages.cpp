#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/windows/message_queue.h"
#include "winlayer/windows/message_retrieval.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

using namespace winlayer;

namespace {

// Null, and -1 for the thread's own messages, need not be windows.
bool canFilterBy(HWND window) {
    return window == nullptr || window == HWND_TOPMOST || findWindowOrSetLastError(window) != nullptr;
}

}  // namespace

LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    entered(__func__);
    return sendMessage(window, message, wParam, lParam);
}

BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) try {
    if (denied(__func__)) {
        return FALSE;
    }
    if (window == nullptr) {
        return PostThreadMessageA(GetCurrentThreadId(), message, wParam, lParam);
    }
    return postMessage(window, message, wParam, lParam) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI PostThreadMessageA(DWORD thread, UINT message, WPARAM wParam, LPARAM lParam) try {
    if (denied(__func__)) {
        return FALSE;
    }
    if (thread == GetCurrentThreadId()) {
        winlayer::MessageQueues::current().makeQueue(thread);
    }
    if (!winlayer::MessageQueues::current().hasQueue(thread)) {
        return failed(ERROR_INVALID_THREAD_ID);
    }
    winlayer::MessageQueues::current().post(thread, {nullptr, message, wParam, lParam, GetTickCount(), {}});
    if (thread != GetCurrentThreadId()) {
        windows().peer().wake();
    }
    return TRUE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT flags) try {
    if (denied(__func__) || !canFilterBy(window)) {
        return FALSE;
    }
    return lookForMessage({window, first, last}, (flags & PM_REMOVE) != 0, *message) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI GetMessageA(LPMSG message, HWND window, UINT first, UINT last) try {
    if (denied(__func__) || !canFilterBy(window)) {
        return -1;
    }
    waitForMessage({window, first, last}, *message);
    return message->message != WM_QUIT ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(-1);
}

BOOL WINAPI TranslateMessage(const MSG* message) try {
    entered(__func__);
    return translateMessage(*message) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

LRESULT WINAPI DispatchMessageA(const MSG* message) {
    entered(__func__);
    return dispatchMessage(*message);
}

void WINAPI PostQuitMessage(int exitCode) try {
    entered(__func__);
    winlayer::MessageQueues::current().postQuit(GetCurrentThreadId(), exitCode);
} catch (const std::bad_alloc&) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
}

LRESULT WINAPI CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    entered(__func__);
    const auto target = findWindowOrSetLastError(window);
    return target != nullptr ? callProcedure(procedure, *target, message, wParam, lParam) : 0;
}
