#include "winlayer/windows/control.h"

#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {

LRESULT defaultControlMessage(Window& window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SETFONT:
            window.font = reinterpret_cast<HFONT>(wParam);
            windows().peer().fontChanged(window.handle);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(window.font);
        case WM_PAINT:
            validate(window);
            return 0;
        case WM_ERASEBKGND:
            return TRUE;
        default:
            return DefWindowProcA(window.handle, message, wParam, lParam);
    }
}

// A window of another class that uses this procedure has no control state.
LRESULT controlProcedure(ControlMaker make, HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr) {
        return 0;
    }
    if (window->control == nullptr && message == WM_NCCREATE) {
        window->control = make(*window);
    }
    return window->control != nullptr ? window->control->message(message, wParam, lParam)
                                      : DefWindowProcA(handle, message, wParam, lParam);
}

}  // namespace winlayer
