#include "winlayer/gdi/graphics.h"
#include "winlayer/windows/message_queue.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_create.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_position.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

// Only visual: a window is destroyed even without memory to repaint what it has covered.
void hide(const Window& window) try {
    if (!window.has(WS_VISIBLE)) {
        return;
    }
    if (window.isChild()) {
        showWindow(window.handle, SW_HIDE);
    } else {
        setPosition(window.handle, nullptr, 0, 0, 0, 0,
                    SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_HIDEWINDOW);
    }
} catch (const std::bad_alloc&) {
}

// The first of these windows on this thread that is not being destroyed and has this owner (null: any); null
// if there is none. Called again after each message, because its handler may destroy other windows.
std::shared_ptr<Window> nextToDestroy(const std::vector<HWND>& handles, HWND owner) {
    for (const HWND handle : handles) {
        auto window = findWindow(handle);
        if (window != nullptr && window->thread == GetCurrentThreadId() && !window->destroying &&
            (owner == nullptr || window->owner == owner)) {
            return window;
        }
    }
    return nullptr;
}

void destroyOwned(HWND owner) {
    while (const auto window = nextToDestroy(windows().topLevel, owner)) {
        destroyWindow(window->handle);
    }
}

// Parents get WM_DESTROY before their children.
void sendDestroy(HWND handle) {
    const auto window = findWindow(handle);
    window->destroying = true;
    sendMessage(handle, WM_DESTROY);
    while (const auto child = nextToDestroy(window->children, nullptr)) {
        sendDestroy(child->handle);
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

// Children are destroyed before their parent.
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
    MessageQueues::current().forget(window.handle);
    if (window.dialog != nullptr && window.dialog->ownFont != nullptr) {
        graphics().remove(window.dialog->ownFont);
    }
    windows().table.remove(window.handle);
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
    // Called again by the window while it is being destroyed.
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

void destroyUnfinished(HWND handle) {
    const DWORD error = GetLastError();
    destroyWindow(handle);
    SetLastError(error);
}

}  // namespace winlayer
