#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/dialogs/dialog.h"
#include "winlayer/dialogs/dialog_navigation.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

template <class T>
T fieldOf(const Window& dialog, int offset) {
    T value{};
    std::memcpy(&value, dialog.extra.data() + offset, sizeof value);
    return value;
}

void setResult(Window& dialog, LRESULT result) {
    std::memcpy(dialog.extra.data() + DWLP_MSGRESULT, &result, sizeof result);
}

// Messages whose result is the dialog procedure's return value.
bool answersDirectly(UINT message) {
    return message == WM_INITDIALOG || (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC);
}

bool hasFocusWithin(const Window& dialog) {
    const HWND focus = windows().focus;
    return focus != nullptr && isBelow(dialog.handle, focus);
}

void saveFocus(Window& dialog) {
    if (hasFocusWithin(dialog)) {
        dialog.dialog->savedFocus = windows().focus;
    }
}

void restoreFocus(const Window& dialog) {
    const auto saved = findWindow(dialog.dialog->savedFocus);
    if (saved != nullptr && isBelow(dialog.handle, saved->handle) && isVisible(*saved) &&
        takesInput(*saved)) {
        setFocus(saved->handle);
    } else if (const HWND first = nextTabItem(dialog, nullptr, false)) {
        setFocus(first);
    }
}

LRESULT activated(Window& dialog, bool active) {
    if (!active) {
        saveFocus(dialog);
    } else if (!hasFocusWithin(dialog)) {
        restoreFocus(dialog);
        if (!hasFocusWithin(dialog)) {
            setFocus(dialog.handle);
        }
    }
    return 0;
}

LRESULT close(const Window& dialog) {
    const auto cancel = childById(dialog, IDCANCEL);
    if (cancel == nullptr || !cancel->has(WS_DISABLED)) {
        postMessage(dialog.handle, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
                    reinterpret_cast<LPARAM>(cancel != nullptr ? cancel->handle : nullptr));
    }
    return 0;
}

LRESULT moveFocus(const Window& dialog, WPARAM wParam, LPARAM lParam) {
    const HWND next = LOWORD(static_cast<DWORD_PTR>(lParam)) != 0
                          ? reinterpret_cast<HWND>(wParam)
                          : nextTabItem(dialog, windows().focus, wParam != 0);
    if (next != nullptr) {
        focusControl(dialog, next);
    }
    return 0;
}

LRESULT defaultAnswer(Window& dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ACTIVATE:
            return activated(dialog, LOWORD(wParam) != WA_INACTIVE);
        case WM_SETFOCUS:
            restoreFocus(dialog);
            return 0;
        case WM_SHOWWINDOW:
            if (wParam == 0) {
                saveFocus(dialog);
            }
            return 0;
        case WM_CLOSE:
            return close(dialog);
        case WM_NEXTDLGCTL:
            return moveFocus(dialog, wParam, lParam);
        case WM_SETFONT:
            dialog.font = reinterpret_cast<HFONT>(wParam);
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(dialog.font);
        case DM_GETDEFID:
            return dialog.dialog->defaultId != 0 ? MAKELONG(dialog.dialog->defaultId, DC_HASDEFID) : 0;
        case DM_SETDEFID:
            setDefaultButton(dialog, LOWORD(wParam));
            return TRUE;
        default:
            return DefWindowProcA(dialog.handle, message, wParam, lParam);
    }
}

void showAsDefault(const Window& dialog, HWND target) {
    for (const HWND handle : controlsOf(dialog)) {
        if (handle != target && (sendMessage(handle, WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON) != 0) {
            sendMessage(handle, BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
        }
    }
    if (target != nullptr && (sendMessage(target, WM_GETDLGCODE) & DLGC_UNDEFPUSHBUTTON) != 0) {
        sendMessage(target, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
    }
}

}  // namespace

void setDefaultButton(Window& dialog, WORD id) {
    dialog.dialog->defaultId = id;
    const auto button = childById(dialog, id);
    showAsDefault(dialog, button != nullptr ? button->handle : nullptr);
}

void focusControl(const Window& dialog, HWND control) {
    setFocus(control);
    showWhatEnterPresses(dialog);
}

void showWhatEnterPresses(const Window& dialog) {
    const HWND control = windows().focus;
    if (dialog.dialog == nullptr || control == nullptr || !isBelow(dialog.handle, control)) {
        return;
    }
    const LRESULT code = sendMessage(control, WM_GETDLGCODE);
    if ((code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0) {
        showAsDefault(dialog, control);
    } else if (const auto button = childById(dialog, dialog.dialog->defaultId)) {
        showAsDefault(dialog, button->handle);
    }
}

}  // namespace winlayer

using namespace winlayer;

LRESULT WINAPI DefDlgProcA(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) try {
    entered(__func__);
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr || window->dialog == nullptr) {
        return window != nullptr ? DefWindowProcA(handle, message, wParam, lParam) : 0;
    }
    setResult(*window, 0);
    const auto procedure = fieldOf<DLGPROC>(*window, DWLP_DLGPROC);
    const INT_PTR handled = procedure != nullptr ? procedure(handle, message, wParam, lParam) : 0;
    if (answersDirectly(message)) {
        return handled;
    }
    if (handled != 0 || findWindow(handle) == nullptr) {
        return fieldOf<LRESULT>(*window, DWLP_MSGRESULT);
    }
    return defaultAnswer(*window, message, wParam, lParam);
} catch (const std::bad_alloc&) {
    return outOfMemory(LRESULT{message == WM_CREATE ? -1 : 0});
}
