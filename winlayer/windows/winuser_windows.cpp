#include <algorithm>
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/windows/window_create.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

using namespace winlayer;

namespace {

WindowClasses& classes() {
    return windows().classes;
}

HWND neighbour(const Window& window, std::ptrdiff_t distance) {
    const std::vector<HWND>& siblings = siblingsOf(window);
    const auto place =
        std::find(siblings.begin(), siblings.end(), window.handle) - siblings.begin() + distance;
    const bool inside = place >= 0 && place < std::ssize(siblings);
    return inside ? siblings[static_cast<std::size_t>(place)] : nullptr;
}

bool hasWindows(const WindowClass& windowClass, const std::vector<HWND>& windows) {
    return std::any_of(windows.begin(), windows.end(), [&](HWND handle) {
        const auto window = findWindow(handle);
        return window != nullptr &&
               (window->windowClass.get() == &windowClass || hasWindows(windowClass, window->children));
    });
}

}  // namespace

ATOM WINAPI RegisterClassA(const WNDCLASSA* request) try {
    if (denied(__func__)) {
        return 0;
    }
    if (request == nullptr || IS_INTRESOURCE(request->lpszClassName) || request->lpfnWndProc == nullptr ||
        request->cbWndExtra < 0) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    WindowClass wanted;
    wanted.name = request->lpszClassName;
    wanted.style = request->style;
    wanted.procedure = request->lpfnWndProc;
    wanted.windowExtra = request->cbWndExtra;
    wanted.instance = request->hInstance;
    wanted.icon = request->hIcon;
    wanted.cursor = request->hCursor;
    wanted.background = request->hbrBackground;
    const auto added = classes().add(std::move(wanted));
    if (added == nullptr) {
        return failed(ERROR_CLASS_ALREADY_EXISTS);
    }
    return added->atom;
} catch (const std::bad_alloc&) {
    return outOfMemory(ATOM{0});
}

BOOL WINAPI UnregisterClassA(LPCSTR name, HINSTANCE) try {
    if (denied(__func__)) {
        return FALSE;
    }
    const auto found = classes().find(name);
    if (found == nullptr || found->ofSystem) {
        return failed(ERROR_CLASS_DOES_NOT_EXIST);
    }
    if (hasWindows(*found, windows().topLevel)) {
        return failed(ERROR_CLASS_HAS_WINDOWS);
    }
    return classes().remove(name) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

int WINAPI GetClassNameA(HWND handle, LPSTR buffer, int size) {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr || size <= 0) {
        return 0;
    }
    const std::string& name = window->windowClass->name;
    const std::size_t length = std::min(name.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, name.data(), length);
    buffer[length] = 0;
    return static_cast<int>(length);
}

HWND WINAPI CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y,
                            int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                            LPVOID parameter) try {
    if (denied(__func__)) {
        return nullptr;
    }
    return createWindow({parameter, instance, menu, parent, height, width, y, x, static_cast<LONG>(style),
                         name, className, exStyle});
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

BOOL WINAPI DestroyWindow(HWND window) try {
    return !denied(__func__) && destroyWindow(window) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI IsWindow(HWND window) {
    entered(__func__);
    return findWindow(window) != nullptr ? TRUE : FALSE;
}

// A child's parent, or the owner of a popup; other windows have none.
HWND WINAPI GetParent(HWND handle) {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr || (window->style & (WS_CHILD | WS_POPUP)) == 0) {
        return nullptr;
    }
    return window->isChild() ? window->parent : window->owner;
}

HWND WINAPI GetWindow(HWND handle, UINT which) {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return nullptr;
    }
    switch (which) {
        case GW_HWNDFIRST:
            return siblingsOf(*window).front();
        case GW_HWNDLAST:
            return siblingsOf(*window).back();
        case GW_HWNDNEXT:
            return neighbour(*window, 1);
        case GW_HWNDPREV:
            return neighbour(*window, -1);
        case GW_OWNER:
            return window->owner;
        case GW_CHILD:
            return window->children.empty() ? nullptr : window->children.front();
        default:
            return failed(ERROR_INVALID_PARAMETER);
    }
}

HWND WINAPI GetDlgItem(HWND dialog, int id) {
    const auto window = windowFor(__func__, dialog);
    const auto child = window != nullptr ? childById(*window, id) : nullptr;
    if (window != nullptr && child == nullptr) {
        SetLastError(ERROR_CONTROL_ID_NOT_FOUND);
    }
    return child != nullptr ? child->handle : nullptr;
}

int WINAPI GetDlgCtrlID(HWND handle) {
    const auto window = windowFor(__func__, handle);
    return window != nullptr ? static_cast<int>(window->id) : 0;
}

BOOL WINAPI IsChild(HWND parent, HWND window) {
    entered(__func__);
    return isBelow(parent, window) ? TRUE : FALSE;
}
