// The data of windows: numbers by offset, properties, text.
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

using namespace winlayer;

namespace {

// Extra bytes of a window at offset `index`.
template <class T>
T* extraOf(Window& window, int index) {
    if (index < 0 || static_cast<std::size_t>(index) + sizeof(T) > window.extra.size()) {
        return failed(ERROR_INVALID_INDEX);
    }
    return reinterpret_cast<T*>(window.extra.data() + index);
}

template <class T>
T readExtra(Window& window, int index) {
    T value{};
    if (const T* place = extraOf<T>(window, index)) {
        std::memcpy(&value, place, sizeof value);
    }
    return value;
}

LONG_PTR exchangeExtra(Window& window, int index, LONG_PTR value) {
    LONG_PTR old = 0;
    if (LONG_PTR* place = extraOf<LONG_PTR>(window, index)) {
        std::memcpy(&old, place, sizeof old);
        std::memcpy(place, &value, sizeof value);
    }
    return old;
}

HWND parentOrOwner(const Window& window) {
    return window.isChild() ? window.parent : window.owner;
}

LONG_PTR read(Window& window, int index) {
    switch (index) {
        case GWL_STYLE:
            return static_cast<LONG>(window.style);
        case GWL_EXSTYLE:
            return static_cast<LONG>(window.exStyle);
        case GWLP_ID:
            return window.id;
        case GWLP_WNDPROC:
            return reinterpret_cast<LONG_PTR>(window.procedure);
        case GWLP_HINSTANCE:
            return reinterpret_cast<LONG_PTR>(window.instance);
        case GWLP_HWNDPARENT:
            return reinterpret_cast<LONG_PTR>(parentOrOwner(window));
        case GWLP_USERDATA:
            return window.userData;
        default:
            return readExtra<LONG_PTR>(window, index);
    }
}

LONG_PTR exchangeStyle(Window& window, DWORD Window::*member, int index, LONG_PTR value) {
    const auto which = static_cast<WPARAM>(static_cast<INT_PTR>(index));
    STYLESTRUCT styles{window.*member, static_cast<DWORD>(value)};
    sendMessage(window.handle, WM_STYLECHANGING, which, reinterpret_cast<LPARAM>(&styles));
    window.*member = styles.styleNew;
    sendMessage(window.handle, WM_STYLECHANGED, which, reinterpret_cast<LPARAM>(&styles));
    windows().peer().stateChanged(window.handle);
    return static_cast<LONG>(styles.styleOld);
}

LONG_PTR exchange(Window& window, int index, LONG_PTR value) {
    const LONG_PTR old = read(window, index);
    switch (index) {
        case GWL_STYLE:
            return exchangeStyle(window, &Window::style, index, value);
        case GWL_EXSTYLE:
            return exchangeStyle(window, &Window::exStyle, index, value);
        case GWLP_ID:
            window.id = value;
            return old;
        case GWLP_WNDPROC:
            window.procedure = reinterpret_cast<WNDPROC>(value);
            return old;
        case GWLP_HINSTANCE:
            window.instance = reinterpret_cast<HINSTANCE>(value);
            return old;
        case GWLP_USERDATA:
            window.userData = value;
            return old;
        case GWLP_HWNDPARENT:
            return failed(ERROR_INVALID_INDEX);
        default:
            return exchangeExtra(window, index, value);
    }
}

// Whether the value is an address, on hosts where that exceeds 32 bits.
bool needsPointer(int index) {
    return sizeof(LONG_PTR) > sizeof(LONG) &&
           (index == GWLP_WNDPROC || index == GWLP_HINSTANCE || index == GWLP_HWNDPARENT);
}

std::shared_ptr<Window> windowForLong(HWND handle, int index) {
    auto window = findWindowOrSetLastError(handle);
    if (window != nullptr && needsPointer(index)) {
        return failed(ERROR_INVALID_INDEX);
    }
    return window;
}

}  // namespace

LONG WINAPI GetWindowLongA(HWND handle, int index) {
    const auto window = denied(__func__) ? nullptr : windowForLong(handle, index);
    if (window == nullptr) {
        return 0;
    }
    return index >= 0 ? readExtra<LONG>(*window, index) : static_cast<LONG>(read(*window, index));
}

LONG_PTR WINAPI GetWindowLongPtrA(HWND handle, int index) {
    const auto window = windowFor(__func__, handle);
    return window != nullptr ? read(*window, index) : 0;
}

LONG_PTR WINAPI SetWindowLongPtrA(HWND handle, int index, LONG_PTR value) try {
    const auto window = windowFor(__func__, handle);
    return window != nullptr ? exchange(*window, index, value) : 0;
} catch (const std::bad_alloc&) {
    return outOfMemory(LONG_PTR{0});
}

BOOL WINAPI SetPropA(HWND handle, LPCSTR name, HANDLE value) try {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return FALSE;
    }
    window->properties[atomKey(name)] = value;
    return TRUE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

HANDLE WINAPI GetPropA(HWND handle, LPCSTR name) try {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return nullptr;
    }
    const auto found = window->properties.find(atomKey(name));
    return found != window->properties.end() ? found->second : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

HANDLE WINAPI RemovePropA(HWND handle, LPCSTR name) try {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return nullptr;
    }
    const auto node = window->properties.extract(atomKey(name));
    return node ? node.mapped() : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

BOOL WINAPI SetWindowTextA(HWND handle, LPCSTR text) try {
    const auto window = windowFor(__func__, handle);
    return window != nullptr && sendText(handle, WM_SETTEXT, 0, text) != 0 ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

int WINAPI GetWindowTextA(HWND handle, LPSTR buffer, int size) try {
    const auto window = windowFor(__func__, handle);
    if (buffer == nullptr || size <= 0) {
        return 0;
    }
    buffer[0] = 0;
    if (window == nullptr) {
        return 0;
    }
    return static_cast<int>(
        sendMessage(handle, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(buffer)));
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}

int WINAPI GetWindowTextLengthA(HWND handle) {
    const auto window = windowFor(__func__, handle);
    return window != nullptr ? static_cast<int>(sendMessage(handle, WM_GETTEXTLENGTH)) : 0;
}
