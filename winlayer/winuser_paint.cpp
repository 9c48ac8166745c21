// Painting.
#include "winlayer/machine.h"
#include "winlayer/window_paint.h"
#include "winlayer/window_tree.h"

using namespace winlayer;

BOOL WINAPI InvalidateRect(HWND handle, const RECT* rectangle, BOOL erase) {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return FALSE;
    }
    invalidate(*window, rectangle, erase != FALSE);
    return TRUE;
}

BOOL WINAPI ValidateRect(HWND handle, const RECT* rectangle) {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return FALSE;
    }
    validate(*window, rectangle);
    return TRUE;
}

BOOL WINAPI GetUpdateRect(HWND handle, LPRECT rectangle, BOOL erase) {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return FALSE;
    }
    if (rectangle != nullptr) {
        *rectangle = window->update;
    }
    if (erase != FALSE && window->toErase) {
        const HDC context = getContext(handle);
        eraseBackground(*window, context);
        releaseContext(handle, context);
    }
    return window->toPaint ? TRUE : FALSE;
}

BOOL WINAPI UpdateWindow(HWND handle) {
    if (denied(__func__) || findWindowOrSetLastError(handle) == nullptr) {
        return FALSE;
    }
    updateWindow(handle);
    return TRUE;
}

HDC WINAPI BeginPaint(HWND handle, PAINTSTRUCT* paint) {
    return denied(__func__) ? nullptr : beginPaint(handle, *paint);
}

BOOL WINAPI EndPaint(HWND handle, const PAINTSTRUCT* paint) {
    entered(__func__);
    return endPaint(handle, *paint) ? TRUE : FALSE;
}

HDC WINAPI GetDC(HWND handle) {
    return denied(__func__) ? nullptr : getContext(handle);
}

int WINAPI ReleaseDC(HWND handle, HDC context) {
    entered(__func__);
    return releaseContext(handle, context) ? 1 : 0;
}

// The icons and cursors of the system itself, by their numbers; the peer knows what they look like.
HICON WINAPI LoadIconA(HINSTANCE instance, LPCSTR name) {
    if (denied(__func__)) {
        return nullptr;
    }
    const auto number = reinterpret_cast<ULONG_PTR>(name);
    if (instance != nullptr || number < reinterpret_cast<ULONG_PTR>(IDI_APPLICATION) ||
        number > reinterpret_cast<ULONG_PTR>(IDI_ASTERISK)) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<HICON>(number);
}

HCURSOR WINAPI LoadCursorA(HINSTANCE instance, LPCSTR name) {
    if (denied(__func__)) {
        return nullptr;
    }
    if (instance != nullptr || name != IDC_ARROW) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<HCURSOR>(reinterpret_cast<ULONG_PTR>(name));
}
