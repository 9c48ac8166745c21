#include "winlayer/dialogs/dialog.h"
#include "winlayer/dialogs/dialog_navigation.h"
#include "winlayer/windows/message_retrieval.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

void command(const Window& dialog, WORD id) {
    const auto control = childById(dialog, id);
    if (control != nullptr && control->has(WS_DISABLED)) {
        return;
    }
    sendMessage(dialog.handle, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                reinterpret_cast<LPARAM>(control != nullptr ? control->handle : nullptr));
}

// Presses the button with the focus, or else the default button, or else OK.
void enterKey(const Window& dialog) {
    const auto focus = findWindow(windows().focus);
    if (focus != nullptr && isBelow(dialog.handle, focus->handle) &&
        (sendMessage(focus->handle, WM_GETDLGCODE) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0) {
        sendMessage(focus->parent, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(focus->id), BN_CLICKED),
                    reinterpret_cast<LPARAM>(focus->handle));
        return;
    }
    const auto answer = static_cast<DWORD_PTR>(sendMessage(dialog.handle, DM_GETDEFID));
    command(dialog, HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : WORD{IDOK});
}

// Moving to an automatic radio button selects it.
void moveInGroup(const Window& dialog, const Window& control, bool previous) {
    const HWND next = nextGroupItem(control, previous);
    if (next == control.handle) {
        return;
    }
    focusControl(dialog, next);
    const auto reached = findWindow(next);
    if (reached != nullptr && (sendMessage(next, WM_GETDLGCODE) & DLGC_RADIOBUTTON) != 0 &&
        (reached->style & BS_TYPEMASK) == BS_AUTORADIOBUTTON &&
        sendMessage(next, BM_GETCHECK) != BST_CHECKED) {
        sendMessage(next, BM_CLICK);
    }
}

// Whether the dialog handles the key.
bool keyDown(const Window& dialog, const std::shared_ptr<Window>& control, WPARAM key, LRESULT wants) {
    switch (key) {
        case VK_TAB:
            if ((wants & DLGC_WANTTAB) != 0) {
                return false;
            }
            sendMessage(dialog.handle, WM_NEXTDLGCTL, windows().keysDown[VK_SHIFT] ? TRUE : FALSE);
            return true;
        case VK_LEFT:
        case VK_UP:
        case VK_RIGHT:
        case VK_DOWN:
            if ((wants & DLGC_WANTARROWS) != 0) {
                return false;
            }
            if (control->handle != dialog.handle) {
                moveInGroup(dialog, *control, key == VK_LEFT || key == VK_UP);
            }
            return true;
        case VK_RETURN:
            enterKey(dialog);
            return true;
        case VK_ESCAPE:
            command(dialog, IDCANCEL);
            return true;
        default:
            return false;
    }
}

bool choose(const Window& dialog, HWND from, char mnemonic) {
    const HWND control = controlWithMnemonic(dialog, from, mnemonic);
    if (control == nullptr) {
        return false;
    }
    focusControl(dialog, control);
    if ((sendMessage(control, WM_GETDLGCODE) & DLGC_BUTTON) != 0) {
        sendMessage(control, BM_CLICK);
    }
    return true;
}

}  // namespace

// The dialog need not come from a template; any window with controls will do. A plain character is a mnemonic
// unless the control takes characters; the space bar belongs to the buttons.
bool handleDialogMessage(HWND handle, const MSG& message) {
    const auto dialog = findWindow(handle);
    const auto control = findWindow(message.hwnd);
    if (dialog == nullptr || control == nullptr ||
        (message.hwnd != handle && !isBelow(handle, message.hwnd))) {
        return false;
    }
    const bool character = message.message == WM_CHAR || message.message == WM_SYSCHAR;
    if (message.message == WM_KEYDOWN || message.message == WM_CHAR) {
        const LRESULT wants =
            sendMessage(message.hwnd, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message));
        const bool kept = (wants & DLGC_WANTALLKEYS) != 0 ||
                          (character && ((wants & DLGC_WANTCHARS) != 0 || message.wParam == VK_SPACE));
        if (!kept && message.message == WM_KEYDOWN && keyDown(*dialog, control, message.wParam, wants)) {
            return true;
        }
        if (!kept && character && choose(*dialog, message.hwnd, static_cast<char>(message.wParam))) {
            return true;
        }
    } else if (character && choose(*dialog, message.hwnd, static_cast<char>(message.wParam))) {
        return true;
    }
    translateMessage(message);
    dispatchMessage(message);
    if (message.message == WM_LBUTTONDOWN && findWindow(handle) != nullptr) {
        showWhatEnterPresses(*dialog);
    }
    return true;
}

}  // namespace winlayer
