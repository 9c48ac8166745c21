#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_position.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

using namespace winlayer;

namespace {

// The screen position of a window's client area; null is the screen itself.
bool originOf(HWND handle, POINT& origin) {
    origin = {};
    if (handle == nullptr) {
        return true;
    }
    const auto window = findWindowOrSetLastError(handle);
    if (window != nullptr) {
        origin = clientOrigin(*window);
    }
    return window != nullptr;
}

BOOL translate(LPPOINT point, POINT by, LONG sign) {
    *point = {point->x + sign * by.x, point->y + sign * by.y};
    return TRUE;
}

}  // namespace

BOOL WINAPI ShowWindow(HWND window, int command) try {
    return !denied(__func__) && showWindow(window, command) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI IsWindowVisible(HWND handle) {
    const auto window = windowFor(__func__, handle);
    return window != nullptr && isVisible(*window) ? TRUE : FALSE;
}

BOOL WINAPI EnableWindow(HWND window, BOOL enable) try {
    return !denied(__func__) && enableWindow(window, enable != FALSE) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI IsWindowEnabled(HWND handle) {
    const auto window = windowFor(__func__, handle);
    return window != nullptr && !window->has(WS_DISABLED) ? TRUE : FALSE;
}

HWND WINAPI SetFocus(HWND window) try {
    return denied(__func__) ? nullptr : setFocus(window);
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

HWND WINAPI GetFocus() {
    entered(__func__);
    return windows().focus;
}

HWND WINAPI SetActiveWindow(HWND handle) try {
    const HWND previous = windows().active;
    const auto window = windowFor(__func__, handle);
    return window != nullptr && activate(handle) ? previous : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

HWND WINAPI GetActiveWindow() {
    entered(__func__);
    return windows().active;
}

BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint) try {
    if (denied(__func__)) {
        return FALSE;
    }
    const UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | (repaint != FALSE ? 0U : UINT{SWP_NOREDRAW});
    return setPosition(window, nullptr, x, y, width, height, flags) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) try {
    return !denied(__func__) && setPosition(window, after, x, y, width, height, flags) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI GetClientRect(HWND handle, LPRECT rectangle) {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return FALSE;
    }
    const SIZE size = clientSize(*window);
    *rectangle = {0, 0, size.cx, size.cy};
    return TRUE;
}

BOOL WINAPI GetWindowRect(HWND handle, LPRECT rectangle) {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return FALSE;
    }
    const POINT origin = windowOrigin(*window);
    *rectangle = {origin.x, origin.y, origin.x + widthOf(window->place), origin.y + heightOf(window->place)};
    return TRUE;
}

BOOL WINAPI ScreenToClient(HWND window, LPPOINT point) {
    POINT origin{};
    return !denied(__func__) && originOf(window, origin) ? translate(point, origin, -1) : FALSE;
}

int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count) {
    POINT source{};
    POINT target{};
    if (denied(__func__) || !originOf(from, source) || !originOf(to, target)) {
        return 0;
    }
    const POINT by{source.x - target.x, source.y - target.y};
    for (UINT i = 0; i < count; ++i) {
        translate(points + i, by, 1);
    }
    return MAKELONG(static_cast<WORD>(by.x), static_cast<WORD>(by.y));
}
