#include "winlayer/dialogs/control_button.h"

#include "winlayer/dialogs/dialog_navigation.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {

DWORD ButtonControl::type() const {
    return window_.style & BS_TYPEMASK;
}

void ButtonControl::changed() {
    windows().peer().stateChanged(window_.handle);
}

LRESULT ButtonControl::dialogCode() const {
    switch (type()) {
        case BS_PUSHBUTTON:
            return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
        case BS_DEFPUSHBUTTON:
            return DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
        case BS_RADIOBUTTON:
        case BS_AUTORADIOBUTTON:
            return DLGC_BUTTON | DLGC_RADIOBUTTON;
        case BS_GROUPBOX:
            return DLGC_STATIC;
        default:
            return DLGC_BUTTON;
    }
}

void ButtonControl::notify(WORD code) {
    sendMessage(window_.parent, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(window_.id), code),
                reinterpret_cast<LPARAM>(window_.handle));
}

// The Tab key stops at the checked button of its group.
LRESULT ButtonControl::setCheck(UINT check) {
    if (isPush() || type() == BS_GROUPBOX) {
        return 0;
    }
    if (isRadio()) {
        check = check != BST_UNCHECKED ? BST_CHECKED : BST_UNCHECKED;
        window_.style = check == BST_CHECKED ? window_.style | WS_TABSTOP : window_.style & ~WS_TABSTOP;
    }
    if (check_ != check) {
        check_ = check;
        changed();
    }
    return 0;
}

void ButtonControl::setPushed(bool pushed) {
    if (pushed_ != pushed) {
        pushed_ = pushed;
        changed();
    }
}

void ButtonControl::changeStyle(DWORD style) {
    window_.style = (window_.style & ~BS_TYPEMASK) | (style & BS_TYPEMASK);
    changed();
}

void ButtonControl::checkAlone() {
    for (const HWND handle : groupOf(window_)) {
        const auto member = findWindow(handle);
        if (member != nullptr && handle != window_.handle &&
            dynamic_cast<ButtonControl*>(member->control.get()) != nullptr &&
            (member->style & BS_TYPEMASK) == BS_AUTORADIOBUTTON) {
            sendMessage(handle, BM_SETCHECK, BST_UNCHECKED);
        }
    }
    sendMessage(window_.handle, BM_SETCHECK, BST_CHECKED);
}

void ButtonControl::click() {
    if (type() == BS_AUTOCHECKBOX) {
        sendMessage(window_.handle, BM_SETCHECK, checked() ? BST_UNCHECKED : BST_CHECKED);
    } else if (type() == BS_AUTORADIOBUTTON) {
        checkAlone();
    }
    notify(BN_CLICKED);
}

void ButtonControl::press() {
    if (type() != BS_GROUPBOX) {
        setCapture(window_.handle);
        setPushed(true);
    }
}

void ButtonControl::release(bool clicked) {
    if (!pushed_ && !byMouse_) {
        return;
    }
    byMouse_ = false;
    setPushed(false);
    if (windows().capture == window_.handle) {
        setCapture(nullptr);
    }
    if (clicked) {
        click();
    }
}

bool ButtonControl::contains(LPARAM point) const {
    const SIZE size = clientSize(window_);
    const auto x = static_cast<SHORT>(LOWORD(static_cast<DWORD_PTR>(point)));
    const auto y = static_cast<SHORT>(HIWORD(static_cast<DWORD_PTR>(point)));
    return x >= 0 && x < size.cx && y >= 0 && y < size.cy;
}

LRESULT ButtonControl::message(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_GETDLGCODE:
            return dialogCode();
        case BM_GETCHECK:
            return check_;
        case BM_SETCHECK:
            return setCheck(static_cast<UINT>(wParam));
        case BM_GETSTATE:
            return (check_ & 3) | (pushed_ ? BST_PUSHED : 0) |
                   (windows().focus == window_.handle ? BST_FOCUS : 0);
        case BM_SETSTATE:
            setPushed(wParam != 0);
            return 0;
        case BM_SETSTYLE:
            changeStyle(static_cast<DWORD>(wParam));
            return 0;
        case BM_CLICK:
            sendMessage(window_.handle, WM_LBUTTONDOWN, MK_LBUTTON, 0);
            sendMessage(window_.handle, WM_LBUTTONUP, 0, 0);
            return 0;
        case WM_LBUTTONDOWN:
            byMouse_ = true;
            setFocus(window_.handle);
            press();
            return 0;
        case WM_MOUSEMOVE:
            if (byMouse_) {
                setPushed(contains(lParam));
            }
            return 0;
        case WM_LBUTTONUP:
            release(contains(lParam));
            return 0;
        case WM_KEYDOWN:
            if (wParam == VK_SPACE) {
                press();
            }
            return 0;
        case WM_KEYUP:
            if (wParam == VK_SPACE) {
                release(true);
            }
            return 0;
        case WM_CAPTURECHANGED:
        case WM_CANCELMODE:
            byMouse_ = false;
            setPushed(false);
            return 0;
        case WM_SETFOCUS:
            changed();
            return 0;
        case WM_KILLFOCUS:
            release(false);
            changed();
            return 0;
        default:
            return defaultControlMessage(window_, message, wParam, lParam);
    }
}

}  // namespace winlayer
