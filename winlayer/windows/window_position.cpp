#include "winlayer/windows/window_position.h"

#include <algorithm>

#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

Peer& peer() {
    return windows().peer();
}

// Returns whether the order changed.
bool restack(const Window& window, HWND after) {
    std::vector<HWND>& siblings = siblingsOf(window);
    const auto before = std::find(siblings.begin(), siblings.end(), window.handle) - siblings.begin();
    std::erase(siblings, window.handle);
    auto place = siblings.begin();
    if (after == HWND_BOTTOM) {
        place = siblings.end();
    } else if (const auto found = std::find(siblings.begin(), siblings.end(), after);
               found != siblings.end()) {
        place = found + 1;
    }
    return siblings.insert(place, window.handle) - siblings.begin() != before;
}

void setVisible(Window& window, bool visible) {
    window.style = visible ? window.style | WS_VISIBLE : window.style & ~WS_VISIBLE;
    if (visible) {
        invalidateAll(window, true);
    } else if (const auto parent = findWindow(window.parent)) {
        invalidate(*parent, &window.place, true);
    }
    peer().shown(window.handle, visible);
}

void applyPlace(Window& window, WINDOWPOS& wanted) {
    const RECT old = window.place;
    const SIZE oldClient = clientSize(window);
    const LONG left = (wanted.flags & SWP_NOMOVE) != 0 ? old.left : wanted.x;
    const LONG top = (wanted.flags & SWP_NOMOVE) != 0 ? old.top : wanted.y;
    const LONG width = (wanted.flags & SWP_NOSIZE) != 0 ? widthOf(old) : std::max(wanted.cx, 0);
    const LONG height = (wanted.flags & SWP_NOSIZE) != 0 ? heightOf(old) : std::max(wanted.cy, 0);
    window.place = {left, top, left + width, top + height};
    const bool moved = left != old.left || top != old.top;
    const bool sized = width != widthOf(old) || height != heightOf(old);
    wanted.flags |= moved ? 0 : SWP_NOMOVE | positionKept;
    wanted.flags |= sized ? 0 : UINT{SWP_NOSIZE};
    const SIZE client = clientSize(window);
    const bool clientSized = client.cx != oldClient.cx || client.cy != oldClient.cy;
    wanted.flags |= clientSized ? 0 : sizeKept;
    if (!moved && !sized) {
        return;
    }
    if ((wanted.flags & SWP_NOREDRAW) == 0) {
        if (const auto parent = findWindow(window.parent); parent != nullptr && isVisible(window)) {
            invalidate(*parent, &old, true);
        }
        if (clientSized) {
            invalidateAll(window, true);
        }
    }
    peer().moved(window.handle);
}

bool changesNothing(UINT flags) {
    constexpr UINT kept = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER;
    return (flags & kept) == kept && (flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW | SWP_FRAMECHANGED)) == 0;
}

bool shows(int command) {
    return command != SW_HIDE;
}

bool activates(int command) {
    return command != SW_SHOWNOACTIVATE && command != SW_SHOWNA;
}

// A hidden window does not keep the focus.
void giveFocusAway(const Window& hidden) {
    const HWND focus = windows().focus;
    if (focus == hidden.handle || isBelow(hidden.handle, focus)) {
        setFocus(hidden.parent);
    }
    if (windows().active == hidden.handle) {
        activateAnother(hidden.handle);
    }
}

}  // namespace

bool hasSizeLimits(const Window& window) {
    return window.has(WS_THICKFRAME) || (window.style & (WS_POPUP | WS_CHILD)) == 0;
}

// The minimum size leaves space for the caption's icon and buttons. There is no maximum.
MINMAXINFO sizeLimits(const Window& window) {
    constexpr POINT least{112, 27};
    constexpr LONG any = 0x7FFF;
    const RECT screen = peer().workArea();
    MINMAXINFO limits{{}, {widthOf(screen), heightOf(screen)}, {screen.left, screen.top}, least, {any, any}};
    sendMessage(window.handle, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    return limits;
}

void sendMoved(const Window& window) {
    const RECT border = borders(window.style, window.exStyle);
    const LONG x = window.place.left + border.left;
    const LONG y = window.place.top + border.top;
    sendMessage(window.handle, WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y)));
}

void sendSized(const Window& window) {
    const SIZE size = clientSize(window);
    sendMessage(window.handle, WM_SIZE, SIZE_RESTORED,
                MAKELPARAM(static_cast<WORD>(size.cx), static_cast<WORD>(size.cy)));
}

bool setPosition(HWND handle, HWND after, int x, int y, int width, int height, UINT flags) {
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr) {
        return false;
    }
    WINDOWPOS wanted{handle, after, x, y, width, height, flags};
    sendMessage(handle, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&wanted));
    if (findWindow(handle) == nullptr) {
        return false;
    }
    applyPlace(*window, wanted);
    if ((wanted.flags & SWP_NOZORDER) == 0) {
        if (restack(*window, wanted.hwndInsertAfter)) {
            peer().restacked(handle);
        } else {
            wanted.flags |= SWP_NOZORDER;
        }
    }
    const bool visible = window->has(WS_VISIBLE);
    if (((wanted.flags & SWP_SHOWWINDOW) != 0 && !visible) ||
        ((wanted.flags & SWP_HIDEWINDOW) != 0 && visible)) {
        setVisible(*window, !visible);
    } else {
        wanted.flags &= ~(SWP_SHOWWINDOW | SWP_HIDEWINDOW);
    }
    if ((wanted.flags & SWP_NOACTIVATE) == 0 && !window->isChild() && window->has(WS_VISIBLE)) {
        activate(handle);
    }
    const RECT place = window->place;
    wanted.x = place.left;
    wanted.y = place.top;
    wanted.cx = widthOf(place);
    wanted.cy = heightOf(place);
    if (!changesNothing(wanted.flags) && findWindow(handle) != nullptr) {
        sendMessage(handle, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&wanted));
    }
    return true;
}

bool showWindow(HWND handle, int command) {
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr) {
        return false;
    }
    const bool wasVisible = window->has(WS_VISIBLE);
    if (shows(command) == wasVisible) {
        if (wasVisible && !window->isChild() && activates(command)) {
            activate(handle);
        }
        return wasVisible;
    }
    sendMessage(handle, WM_SHOWWINDOW, shows(command) ? TRUE : FALSE, 0);
    if (findWindow(handle) == nullptr) {
        return wasVisible;
    }
    const auto parent = findWindow(window->parent);
    if (parent != nullptr && !isVisible(*parent)) {
        setVisible(*window, shows(command));  // nothing visible changes, so no other message is due
    } else {
        UINT flags = SWP_NOMOVE | SWP_NOSIZE | (shows(command) ? SWP_SHOWWINDOW : SWP_HIDEWINDOW);
        if (window->isChild() || !shows(command) || !activates(command)) {
            flags |= SWP_NOACTIVATE | SWP_NOZORDER;
        }
        setPosition(handle, HWND_TOP, 0, 0, 0, 0, flags);
    }
    if (findWindow(handle) == nullptr) {
        return wasVisible;
    }
    if (!shows(command)) {
        giveFocusAway(*window);
    } else if (window->sizeDue) {
        window->sizeDue = false;
        sendSized(*window);
        sendMoved(*window);
    }
    return wasVisible;
}

bool enableWindow(HWND handle, bool enable) {
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr) {
        return false;
    }
    const bool wasDisabled = window->has(WS_DISABLED);
    if (enable == !wasDisabled) {
        return wasDisabled;
    }
    Windows& windows = Windows::current();
    if (!enable) {
        sendMessage(handle, WM_CANCELMODE);
    }
    window->style = enable ? window->style & ~WS_DISABLED : window->style | WS_DISABLED;
    windows.peer().enabled(handle, enable);
    // A top-level window disabled for a modal dialog keeps the focus until the dialog takes it, and so
    // remembers which control had it.
    const bool within = windows.focus == handle || (window->isChild() && isBelow(handle, windows.focus));
    if (!enable && within) {
        setFocus(nullptr);
    }
    sendMessage(handle, WM_ENABLE, enable ? TRUE : FALSE, 0);
    return wasDisabled;
}

}  // namespace winlayer
