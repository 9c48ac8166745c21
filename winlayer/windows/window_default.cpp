#include <algorithm>
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_create.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_position.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

using namespace winlayer;

namespace {

LRESULT setText(Window& window, const char* text) {
    window.text = text != nullptr ? text : "";
    windows().peer().textChanged(window.handle);
    return TRUE;
}

LRESULT getText(const Window& window, std::size_t size, char* buffer) {
    if (size == 0 || buffer == nullptr) {
        return 0;
    }
    const std::size_t length = std::min(window.text.size(), size - 1);
    std::memcpy(buffer, window.text.data(), length);
    buffer[length] = 0;
    return static_cast<LRESULT>(length);
}

LRESULT takeName(Window& window, const CREATESTRUCTA& request) {
    window.text = request.lpszName != nullptr ? request.lpszName : "";
    return TRUE;
}

void reportPosition(const Window& window, const WINDOWPOS& position) {
    if ((position.flags & positionKept) == 0) {
        sendMoved(window);
    }
    if ((position.flags & sizeKept) == 0) {
        sendSized(window);
    }
}

void keepToLimits(const Window& window, WINDOWPOS& wanted) {
    if ((wanted.flags & SWP_NOSIZE) != 0 || !hasSizeLimits(window)) {
        return;
    }
    const MINMAXINFO limits = sizeLimits(window);
    const auto within = [](int size, LONG least, LONG most) {
        return static_cast<int>(std::max(least, std::min<LONG>(size, most)));
    };
    wanted.cx = within(wanted.cx, limits.ptMinTrackSize.x, limits.ptMaxTrackSize.x);
    wanted.cy = within(wanted.cy, limits.ptMinTrackSize.y, limits.ptMaxTrackSize.y);
}

LRESULT paintNothing(HWND window) {
    PAINTSTRUCT paint{};
    if (beginPaint(window, paint) != nullptr) {
        endPaint(window, paint);
    }
    return 0;
}

}  // namespace

LRESULT WINAPI DefWindowProcA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) try {
    entered(__func__);
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr) {
        return 0;
    }
    switch (message) {
        case WM_NCCREATE:
            return takeName(*window, *reinterpret_cast<const CREATESTRUCTA*>(lParam));
        case WM_SETTEXT:
            return setText(*window, reinterpret_cast<const char*>(lParam));
        case WM_GETTEXT:
            return getText(*window, wParam, reinterpret_cast<char*>(lParam));
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(window->text.size());
        case WM_CLOSE:
            destroyWindow(handle);
            return 0;
        case WM_PAINT:
            return paintNothing(handle);
        case WM_ERASEBKGND:
            return fillBackground(*window, reinterpret_cast<HDC>(wParam)) ? TRUE : FALSE;
        case WM_WINDOWPOSCHANGING:
            keepToLimits(*window, *reinterpret_cast<WINDOWPOS*>(lParam));
            return 0;
        case WM_WINDOWPOSCHANGED:
            reportPosition(*window, *reinterpret_cast<const WINDOWPOS*>(lParam));
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE) {
                setFocus(handle);
            }
            return 0;
        default:
            return 0;
    }
} catch (const std::bad_alloc&) {
    return outOfMemory(LRESULT{0});
}
