#include "winlayer/windows/window_paint.h"

#include <algorithm>

#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

RECT intersection(const RECT& a, const RECT& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

bool isEmpty(const RECT& rectangle) {
    return rectangle.left >= rectangle.right || rectangle.top >= rectangle.bottom;
}

RECT clientRectangle(const Window& window) {
    const SIZE size = clientSize(window);
    return {0, 0, size.cx, size.cy};
}

void mark(Window& window, const RECT& area, bool erase) {
    const RECT part = intersection(area, clientRectangle(window));
    if (isEmpty(part)) {
        return;
    }
    const RECT& old = window.update;
    window.update = window.toPaint ? RECT{std::min(old.left, part.left), std::min(old.top, part.top),
                                          std::max(old.right, part.right), std::max(old.bottom, part.bottom)}
                                   : part;
    window.toPaint = true;
    window.toErase = window.toErase || erase;
}

void markTree(Window& window, const RECT& area, bool erase, bool always) {
    mark(window, area, erase);
    if (!always && window.has(WS_CLIPCHILDREN)) {
        return;
    }
    for (const HWND handle : window.children) {
        const auto child = findWindow(handle);
        if (child == nullptr || !child->has(WS_VISIBLE) || isEmpty(intersection(child->place, area))) {
            continue;
        }
        const RECT border = borders(child->style, child->exStyle);
        const LONG x = child->place.left + border.left;
        const LONG y = child->place.top + border.top;
        markTree(*child, {area.left - x, area.top - y, area.right - x, area.bottom - y}, true, always);
    }
}

HWND firstToPaint(const std::vector<HWND>& windows, DWORD thread,
                  const std::function<bool(const MSG&)>& wanted) {
    for (const HWND handle : windows) {
        const auto window = findWindow(handle);
        if (window == nullptr || !window->has(WS_VISIBLE)) {
            continue;
        }
        if (window->toPaint && window->thread == thread && wanted({handle, WM_PAINT, 0, 0, 0, {}})) {
            return handle;
        }
        if (const HWND below = firstToPaint(window->children, thread, wanted)) {
            return below;
        }
    }
    return nullptr;
}

}  // namespace

void invalidate(Window& window, const RECT* area, bool erase) {
    if (isVisible(window)) {
        markTree(window, area != nullptr ? *area : clientRectangle(window), erase, false);
    }
}

void invalidateAll(Window& window, bool erase) {
    if (isVisible(window)) {
        markTree(window, clientRectangle(window), erase, true);
    }
}

void validate(Window& window) {
    window.toPaint = window.toErase = false;
    window.update = {};
}

void updateWindow(HWND handle) {
    const auto window = findWindow(handle);
    if (window == nullptr || !isVisible(*window)) {
        return;
    }
    if (window->toPaint) {
        sendMessage(handle, WM_PAINT);
    }
    for (const HWND child : std::vector<HWND>(window->children)) {
        updateWindow(child);
    }
}

bool eraseBackground(Window& window, HDC context) {
    if (!window.toErase) {
        return true;
    }
    window.toErase = false;
    return sendMessage(window.handle, WM_ERASEBKGND, reinterpret_cast<WPARAM>(context)) != 0;
}

HWND nextToPaint(DWORD thread, const std::function<bool(const MSG&)>& wanted) {
    return firstToPaint(windows().topLevel, thread, wanted);
}

}  // namespace winlayer
