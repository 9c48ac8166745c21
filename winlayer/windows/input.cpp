#include "winlayer/windows/input.h"

#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

bool contains(const RECT& rectangle, POINT point) {
    return point.x >= rectangle.left && point.x < rectangle.right && point.y >= rectangle.top &&
           point.y < rectangle.bottom;
}

// A static text is transparent to the mouse unless it has SS_NOTIFY.
bool letsThrough(const Window& window) {
    return !window.has(WS_VISIBLE) || window.has(WS_DISABLED) ||
           ((sendMessage(window.handle, WM_GETDLGCODE) & DLGC_STATIC) != 0 && !window.has(SS_NOTIFY));
}

// The child window at a point of `window`'s client area; `point` becomes relative to it.
HWND windowAt(const Window& window, POINT& point) {
    for (const HWND handle : window.children) {
        const auto child = findWindow(handle);
        if (child == nullptr || letsThrough(*child) || !contains(child->place, point)) {
            continue;
        }
        const RECT border = borders(child->style, child->exStyle);
        point = {point.x - child->place.left - border.left, point.y - child->place.top - border.top};
        return windowAt(*child, point);
    }
    return window.handle;
}

void postMouse(HWND handle, UINT message, WPARAM buttons, POINT point) {
    const auto window = findWindow(handle);
    if (window == nullptr) {
        return;
    }
    Windows& windows = Windows::current();
    const POINT origin = clientOrigin(*window);
    windows.cursor = {origin.x + point.x, origin.y + point.y};
    HWND target = nullptr;
    if (const auto captor = findWindow(windows.capture)) {
        const POINT base = clientOrigin(*captor);
        point = {windows.cursor.x - base.x, windows.cursor.y - base.y};
        target = captor->handle;
    } else if (takesInput(*window)) {
        target = windowAt(*window, point);
    }
    if (target != nullptr) {
        postMessage(target, message, buttons,
                    MAKELPARAM(static_cast<WORD>(point.x), static_cast<WORD>(point.y)));
    }
}

void postKey(UINT message, UINT systemMessage, WPARAM key, bool alt) {
    constexpr LPARAM altBit = 1 << 29;
    const Windows& windows = Windows::current();
    const HWND target = windows.focus != nullptr ? windows.focus : windows.active;
    if (target != nullptr) {
        postMessage(target, alt ? systemMessage : message, key, 1 | (alt ? altBit : 0));
    }
}

}  // namespace

void mousePress(HWND window, POINT point) {
    postMouse(window, WM_LBUTTONDOWN, MK_LBUTTON, point);
}

void mouseMove(HWND window, POINT point) {
    postMouse(window, WM_MOUSEMOVE, windows().capture != nullptr ? MK_LBUTTON : 0, point);
}

void mouseRelease(HWND window, POINT point) {
    postMouse(window, WM_LBUTTONUP, 0, point);
}

void keyDown(UINT virtualKey, bool alt) {
    postKey(WM_KEYDOWN, WM_SYSKEYDOWN, virtualKey, alt);
}

void keyUp(UINT virtualKey, bool alt) {
    postKey(WM_KEYUP, WM_SYSKEYUP, virtualKey, alt);
}

void character(char ansi, bool alt) {
    postKey(WM_CHAR, WM_SYSCHAR, static_cast<BYTE>(ansi), alt);
}

void requestClose(HWND window) {
    const auto target = findWindow(window);
    if (target != nullptr && takesInput(*target)) {
        postMessage(window, WM_CLOSE);
    }
}

}  // namespace winlayer
