#include "CBaseDialog.h"

namespace {

constexpr char objectProperty[] = "QX_AWDC";

}  // namespace

CBaseDialog::~CBaseDialog() {
    if (HasWindow()) {
        ::RemovePropA(hwnd_, objectProperty);
        ::DestroyWindow(hwnd_);
    }
}

// The property distinguishes our window from a later one with the same handle.
bool CBaseDialog::HasWindow() const {
    return hwnd_ != nullptr && ::GetPropA(hwnd_, objectProperty) == this;
}

LONG CBaseDialog::OnMessage(UINT, WPARAM, LPARAM, BOOL* handled) {
    *handled = FALSE;
    return 0;
}

int CBaseDialog::CreateDialogWindow(HINSTANCE instance, HWND parent, WORD templateId, BOOL modal) {
    modal_ = modal;
    const LPCSTR name = MAKEINTRESOURCEA(templateId);
    const auto object = reinterpret_cast<LPARAM>(this);
    if (modal_) {
        return static_cast<int>(::DialogBoxParamA(instance, name, parent, DialogProc, object));
    }
    const HWND window = ::CreateDialogParamA(instance, name, parent, DialogProc, object);
    if (::IsWindow(window) && HasWindow()) {
        return 0;
    }
    const DWORD error = ::GetLastError();
    ::DestroyWindow(window);  // a window that could not be tied to the object
    return static_cast<int>(error != 0 ? error : ERROR_INVALID_WINDOW_HANDLE);
}

INT_PTR CALLBACK CBaseDialog::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    CBaseDialog* object = nullptr;
    if (message == WM_INITDIALOG) {
        object = reinterpret_cast<CBaseDialog*>(lParam);
        object->hwnd_ = window;
        if (!::SetPropA(window, objectProperty, object)) {
            ::EndDialog(window, -1);
            return FALSE;
        }
    } else {
        object = static_cast<CBaseDialog*>(::GetPropA(window, objectProperty));
    }
    if (object == nullptr) {
        return FALSE;
    }
    BOOL handled = FALSE;
    INT_PTR result = 0;
    bool failed = false;
    try {
        result = object->OnMessage(message, wParam, lParam, &handled);  // may delete the object
    } catch (...) {
        failed = true;  // no exception may reach the host's message loop
    }
    if (message == WM_DESTROY) {
        ::RemovePropA(window, objectProperty);
    }
    if (failed && message == WM_INITDIALOG) {
        // A partly set-up page must not be used: detached from its object it counts as not created.
        ::RemovePropA(window, objectProperty);
        ::EndDialog(window, -1);
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    }
    return handled && !failed ? result : FALSE;
}
