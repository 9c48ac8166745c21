#include "winlayer/dialogs/control_static.h"

#include <utility>

#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {

StaticControl::StaticControl(Window& window) : Control(window) {
    if (window.has(SS_SUNKEN)) {
        window.exStyle |= WS_EX_STATICEDGE;
    }
}

LRESULT StaticControl::message(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_GETDLGCODE:
            return DLGC_STATIC;
        case STM_GETICON:
            return reinterpret_cast<LRESULT>(icon_);
        case STM_SETICON: {
            const HICON old = std::exchange(icon_, reinterpret_cast<HICON>(wParam));
            windows().peer().stateChanged(window_.handle);
            return reinterpret_cast<LRESULT>(old);
        }
        case WM_LBUTTONDOWN:
            if (window_.has(SS_NOTIFY)) {
                sendMessage(window_.parent, WM_COMMAND,
                            MAKEWPARAM(static_cast<WORD>(window_.id), STN_CLICKED),
                            reinterpret_cast<LPARAM>(window_.handle));
            }
            return 0;
        default:
            return defaultControlMessage(window_, message, wParam, lParam);
    }
}

}  // namespace winlayer
