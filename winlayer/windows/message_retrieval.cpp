#include "winlayer/windows/message_retrieval.h"

#include "winlayer/windows/message_queue.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

const HWND threadOnly = reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1));

// Records the keyboard and mouse state of a message taken from the queue.
void noteInput(const MSG& message) {
    Windows& windows = Windows::current();
    switch (message.message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            windows.keysDown[message.wParam & 0xFF] = true;
            break;
        case WM_KEYUP:
        case WM_SYSKEYUP:
            windows.keysDown[message.wParam & 0xFF] = false;
            break;
        case WM_LBUTTONDOWN:
            activate(rootOf(message.hwnd));
            break;
        default:
            break;
    }
}

char characterOf(WPARAM key, bool shift) {
    if (key >= 'A' && key <= 'Z') {
        return static_cast<char>(shift ? key : key - 'A' + 'a');
    }
    const bool plain = (key >= '0' && key <= '9' && !shift) || key == VK_SPACE || key == VK_BACK ||
                       key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE;
    return plain ? static_cast<char>(key) : '\0';
}

}  // namespace

bool MessageFilter::passes(const MSG& message) const {
    const bool inRange = (first == 0 && last == 0) || (message.message >= first && message.message <= last);
    const bool mine = window == nullptr || (window == threadOnly && message.hwnd == nullptr) ||
                      message.hwnd == window || isBelow(window, message.hwnd);
    return inRange && mine;
}

bool lookForMessage(const MessageFilter& filter, bool remove, MSG& message) {
    const DWORD thread = GetCurrentThreadId();
    windows().peer().poll();
    MessageQueues::current().runSent(thread);
    const auto wanted = [&](const MSG& candidate) { return filter.passes(candidate); };
    if (MessageQueues::current().peek(thread, wanted, remove, message)) {
        if (remove) {
            noteInput(message);
        }
        return true;
    }
    if (MessageQueues::current().peekQuit(thread, remove, message)) {
        return true;
    }
    if (const HWND window = nextToPaint(thread, wanted)) {
        message = {window, WM_PAINT, 0, 0, GetTickCount(), windows().cursor};
        return true;
    }
    return false;
}

void waitForMessage(const MessageFilter& filter, MSG& message) {
    while (!lookForMessage(filter, true, message)) {
        windows().peer().wait();
    }
}

// Characters of other keys depend on the keyboard layout and come from the display backend.
bool translateMessage(const MSG& message) {
    const bool system = message.message == WM_SYSKEYDOWN;
    if (message.message != WM_KEYDOWN && !system) {
        return false;
    }
    const char character = characterOf(message.wParam, windows().keysDown[VK_SHIFT]);
    if (character == '\0') {
        return false;
    }
    postMessage(message.hwnd, system ? WM_SYSCHAR : WM_CHAR, static_cast<BYTE>(character), message.lParam);
    return true;
}

LRESULT dispatchMessage(const MSG& message) {
    return message.hwnd != nullptr
               ? sendMessage(message.hwnd, message.message, message.wParam, message.lParam)
               : 0;
}

}  // namespace winlayer
