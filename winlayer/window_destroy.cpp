#include "winlayer/dialog.h"
#include "winlayer/machine.h"
#include "winlayer/message_send.h"
#include "winlayer/window_create.h"
#include "winlayer/window_focus.h"
#include "winlayer/window_position.h"
#include "winlayer/window_tree.h"

namespace winlayer {
namespace {

Windows& windows() {
    return Machine::current().windows;
}

void hide(const Window& window) {
    if (!window.has(WS_VISIBLE)) {
        return;
    }
    if (window.isChild()) {
        showWindow(window.handle, SW_HIDE);
    } else {
        setPosition(window.handle, nullptr, 0, 0, 0, 0,
                    SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_HIDEWINDOW);
    }
}

void destroyOwned(HWND owner) {
    for (const HWND candidate : std::vector<HWND>(windows().topLevel)) {
        const auto window = findWindow(candidate);
        if (window != nullptr && window->owner == owner) {
            destroyWindow(candidate);
        }
    }
}

// Parents hear of their end before their children.
void sendDestroy(HWND handle) {
    const auto window = findWindow(handle);
    window->destroying = true;
    sendMessage(handle, WM_DESTROY);
    for (const HWND child : std::vector<HWND>(window->children)) {
        if (findWindow(child) != nullptr) {
            sendDestroy(child);
        }
    }
}

void letGoOfInput(const Window& window) {
    if (windows().capture == window.handle) {
        windows().capture = nullptr;
    }
    if (windows().active == window.handle) {
        activateAnother(window.handle);
    }
    if (windows().focus == window.handle) {
        windows().focus = nullptr;
        windows().peer().focused(nullptr);
    }
}

// Children are gone before their parent.
void finish(HWND handle) {
    const auto window = findWindow(handle);
    if (window == nullptr) {
        return;
    }
    while (!window->children.empty()) {
        finish(window->children.front());
    }
    letGoOfInput(*window);
    sendMessage(handle, WM_NCDESTROY);
    strikeOff(*window);
    windows().peer().destroyed(handle);
}

}  // namespace

void strikeOff(const Window& window) {
    std::erase(siblingsOf(window), window.handle);
    Machine& machine = Machine::current();
    machine.messages.forget(window.handle);
    machine.windows.timers.killAll(window.handle);
    deleteDialogFont(window);
    machine.windows.table.remove(window.handle);
}

bool destroyWindow(HWND handle) {
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr) {
        return false;
    }
    if (window->thread != GetCurrentThreadId()) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    // Asked again by the window itself while it goes.
    if (window->destroying) {
        return true;
    }
    window->destroying = true;
    hide(*window);
    destroyOwned(handle);
    if (findWindow(handle) != nullptr) {
        sendDestroy(handle);
        finish(handle);
    }
    return true;
}

}  // namespace winlayer
