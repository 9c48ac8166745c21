#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/dialogs/dialog.h"
#include "winlayer/dialogs/dialog_navigation.h"
#include "winlayer/dialogs/message_box.h"
#include "winlayer/modules/modules.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_tree.h"

using namespace winlayer;

namespace {

// A template in memory determines its own size.
constexpr std::size_t unknownSize = std::size_t{1} << 24;

std::optional<DialogTemplate> read(std::span<const BYTE> bytes) {
    auto dialog = readDialogTemplate(bytes, winlayer::SystemSettings::current().ansiCodePage);
    if (!dialog) {
        SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
    }
    return dialog;
}

std::optional<DialogTemplate> readAt(LPCDLGTEMPLATEA address) {
    if (address == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return std::nullopt;
    }
    return read({reinterpret_cast<const BYTE*>(address), unknownSize});
}

std::optional<DialogTemplate> load(HINSTANCE instance, LPCSTR name) {
    const auto bytes =
        winlayer::Modules::current().resource(instance, ResourceId(RT_DIALOG), ResourceId(name));
    if (bytes.empty()) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return std::nullopt;
    }
    return read(bytes);
}

std::shared_ptr<Window> dialogOrSetLastError(HWND dialog) {
    auto window = findWindowOrSetLastError(dialog);
    if (window != nullptr && window->dialog == nullptr) {
        return failed(ERROR_WINDOW_NOT_DIALOG);
    }
    return window;
}

HWND itemOf(HWND dialog, int id) {
    const auto window = findWindowOrSetLastError(dialog);
    const auto control = window != nullptr ? childById(*window, id) : nullptr;
    if (window != nullptr && control == nullptr) {
        SetLastError(ERROR_CONTROL_ID_NOT_FOUND);
    }
    return control != nullptr ? control->handle : nullptr;
}

}  // namespace

HWND WINAPI CreateDialogParamA(HINSTANCE instance, LPCSTR templateName, HWND parent, DLGPROC procedure,
                               LPARAM parameter) try {
    if (denied(__func__)) {
        return nullptr;
    }
    const auto dialog = load(instance, templateName);
    return dialog ? createDialog(*dialog, {instance, parent, procedure, parameter}) : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

HWND WINAPI CreateDialogIndirectParamA(HINSTANCE instance, LPCDLGTEMPLATEA dialogTemplate, HWND parent,
                                       DLGPROC procedure, LPARAM parameter) try {
    if (denied(__func__)) {
        return nullptr;
    }
    const auto dialog = readAt(dialogTemplate);
    return dialog ? createDialog(*dialog, {instance, parent, procedure, parameter}) : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

INT_PTR WINAPI DialogBoxParamA(HINSTANCE instance, LPCSTR templateName, HWND parent, DLGPROC procedure,
                               LPARAM parameter) try {
    if (denied(__func__)) {
        return -1;
    }
    const auto dialog = load(instance, templateName);
    return dialog ? runDialog(*dialog, {instance, parent, procedure, parameter}) : -1;
} catch (const std::bad_alloc&) {
    return outOfMemory(-1);
}

INT_PTR WINAPI DialogBoxIndirectParamA(HINSTANCE instance, LPCDLGTEMPLATEA dialogTemplate, HWND parent,
                                       DLGPROC procedure, LPARAM parameter) try {
    if (denied(__func__)) {
        return -1;
    }
    const auto dialog = readAt(dialogTemplate);
    return dialog ? runDialog(*dialog, {instance, parent, procedure, parameter}) : -1;
} catch (const std::bad_alloc&) {
    return outOfMemory(-1);
}

BOOL WINAPI EndDialog(HWND dialog, INT_PTR result) try {
    return !denied(__func__) && endDialog(dialog, result) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI IsDialogMessageA(HWND dialog, LPMSG message) try {
    entered(__func__);
    return handleDialogMessage(dialog, *message) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rectangle) {
    const auto window = denied(__func__) ? nullptr : dialogOrSetLastError(dialog);
    if (window == nullptr) {
        return FALSE;
    }
    *rectangle = fromDialogUnits(window->dialog->baseUnits, *rectangle);
    return TRUE;
}

HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) try {
    const auto window = windowFor(__func__, dialog);
    return window != nullptr ? nextTabItem(*window, control, previous != FALSE) : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

UINT WINAPI GetDlgItemTextA(HWND dialog, int id, LPSTR buffer, int size) try {
    const HWND control = denied(__func__) ? nullptr : itemOf(dialog, id);
    if (buffer == nullptr || size <= 0) {
        return 0;
    }
    buffer[0] = 0;
    if (control == nullptr) {
        return 0;
    }
    return static_cast<UINT>(
        sendMessage(control, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(buffer)));
} catch (const std::bad_alloc&) {
    return outOfMemory(0U);
}

BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check) try {
    const HWND control = denied(__func__) ? nullptr : itemOf(dialog, id);
    if (control == nullptr) {
        return FALSE;
    }
    sendMessage(control, BM_SETCHECK, check);
    return TRUE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

UINT WINAPI IsDlgButtonChecked(HWND dialog, int id) {
    const HWND control = denied(__func__) ? nullptr : itemOf(dialog, id);
    return control != nullptr ? static_cast<UINT>(sendMessage(control, BM_GETCHECK)) : 0;
}

int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT style) try {
    return denied(__func__) ? 0 : showMessageBox(owner, text, caption, style);
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}
