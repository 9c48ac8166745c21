#include "winlayer/windows/window_focus.h"

#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_position.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

WPARAM asParameter(HWND window) {
    return reinterpret_cast<WPARAM>(window);
}

void changeFocus(HWND window) {
    const HWND previous = windows().focus;
    windows().focus = window;
    if (findWindow(previous) != nullptr) {
        sendMessage(previous, WM_KILLFOCUS, asParameter(window));
    }
    if (windows().focus != window) {
        return;  // the handler has moved the focus elsewhere
    }
    if (findWindow(window) != nullptr) {
        sendMessage(window, WM_SETFOCUS, asParameter(previous));
    }
    windows().peer().focused(windows().focus);
}

}  // namespace

HWND setFocus(HWND handle) {
    const HWND previous = windows().focus;
    if (handle == nullptr) {
        if (previous != nullptr) {
            changeFocus(nullptr);
        }
        return previous;
    }
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr || !takesInput(*window)) {
        return nullptr;
    }
    const HWND root = rootOf(handle);
    if (windows().active != root && (!activate(root) || windows().active != root)) {
        return nullptr;
    }
    if (windows().focus != handle && findWindow(handle) != nullptr) {
        changeFocus(handle);
    }
    return previous;
}

bool activate(HWND handle) {
    const auto window = findWindow(handle);
    const HWND previous = windows().active;
    if (window == nullptr || window->isChild() || window->has(WS_DISABLED)) {
        return false;
    }
    if (previous == handle) {
        return true;
    }
    windows().active = handle;
    if (findWindow(previous) != nullptr) {
        sendMessage(previous, WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(handle));
    }
    if (windows().active != handle || findWindow(handle) == nullptr) {
        return false;
    }
    setPosition(handle, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    sendMessage(handle, WM_ACTIVATE, WA_ACTIVE, reinterpret_cast<LPARAM>(previous));
    // The focus must not stay in a window that is not active.
    if (windows().active == handle && windows().focus != nullptr && rootOf(windows().focus) != handle) {
        changeFocus(findWindow(handle) != nullptr ? handle : nullptr);
    }
    return windows().active == handle;
}

void activateAnother(HWND leaving) {
    windows().active = nullptr;
    const auto window = findWindow(leaving);
    if (const auto owner = findWindow(window != nullptr ? window->owner : nullptr);
        owner != nullptr && isVisible(*owner) && activate(owner->handle)) {
        return;
    }
    // By index, because this must not need memory: handlers may change the order meanwhile.
    for (std::size_t i = 0; i < windows().topLevel.size(); ++i) {
        const HWND candidate = windows().topLevel[i];
        const auto other = findWindow(candidate);
        if (candidate != leaving && other != nullptr && isVisible(*other) && activate(candidate)) {
            return;
        }
    }
    setFocus(nullptr);
}

HWND setCapture(HWND window) {
    const HWND previous = windows().capture;
    windows().capture = window;
    if (previous != nullptr && previous != window && findWindow(previous) != nullptr) {
        sendMessage(previous, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(window));
    }
    return previous;
}

}  // namespace winlayer
