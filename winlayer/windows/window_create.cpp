#include "winlayer/windows/window_create.h"

#include <algorithm>

#include "winlayer/base/last_error.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_position.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

constexpr int defaultWidth = 640;
constexpr int defaultHeight = 480;

void settle(CREATESTRUCTA& request) {
    auto style = static_cast<DWORD>(request.style);
    if ((style & (WS_CHILD | WS_POPUP)) == WS_OVERLAPPED) {
        style |= WS_CAPTION;
    }
    if ((style & WS_CHILD) == 0) {
        style |= WS_CLIPSIBLINGS;
    }
    request.style = static_cast<LONG>(style);
    if (request.x == CW_USEDEFAULT) {
        request.x = request.y = 0;
    }
    if (request.cx == CW_USEDEFAULT) {
        request.cx = defaultWidth;
        request.cy = defaultHeight;
    }
}

std::shared_ptr<Window> makeWindow(const CREATESTRUCTA& request,
                                   const std::shared_ptr<const WindowClass>& windowClass) {
    auto window = std::make_shared<Window>();
    window->thread = GetCurrentThreadId();
    window->windowClass = windowClass;
    window->style = static_cast<DWORD>(request.style) & ~WS_VISIBLE;
    window->exStyle = request.dwExStyle;
    window->instance = request.hInstance;
    window->procedure = windowClass->procedure;
    window->extra.resize(static_cast<std::size_t>(windowClass->windowExtra));
    window->place = {request.x, request.y, request.x + std::max(request.cx, 0),
                     request.y + std::max(request.cy, 0)};
    if (window->isChild()) {
        window->parent = request.hwndParent;
        window->id = reinterpret_cast<LONG_PTR>(request.hMenu);
    } else {
        window->owner = request.hwndParent != nullptr ? rootOf(request.hwndParent) : nullptr;
        window->sizeDue = (window->style & WS_POPUP) == 0;
    }
    return window;
}

// Children are listed in order of creation, which is the tab order; a top-level window is placed above the
// others.
bool enroll(const std::shared_ptr<Window>& window) {
    std::vector<HWND>& siblings = siblingsOf(*window);
    siblings.reserve(siblings.size() + 1);
    if (windows().table.add(window) == nullptr) {
        return false;
    }
    siblings.insert(window->isChild() ? siblings.end() : siblings.begin(), window->handle);
    return true;
}

HWND finishWindow(const Window& window, const CREATESTRUCTA& request) {
    const HWND handle = window.handle;
    const auto parameter = reinterpret_cast<LPARAM>(&request);
    if (sendMessage(handle, WM_NCCREATE, 0, parameter) == 0) {
        if (findWindow(handle) != nullptr) {
            strikeOff(window);
        }
        return nullptr;
    }
    windows().peer().created(handle);
    if (sendMessage(handle, WM_CREATE, 0, parameter) == -1) {
        destroyUnfinished(handle);
        return nullptr;
    }
    if (findWindow(handle) != nullptr && !window.sizeDue) {
        sendSized(window);
        sendMoved(window);
    }
    if ((static_cast<DWORD>(request.style) & WS_VISIBLE) != 0 && findWindow(handle) != nullptr) {
        showWindow(handle, SW_SHOW);
    }
    return findWindow(handle) != nullptr ? handle : nullptr;
}

}  // namespace

HWND createWindow(CREATESTRUCTA request) {
    const auto windowClass = windows().classes.find(request.lpszClass);
    if (windowClass == nullptr) {
        return failed(ERROR_CANNOT_FIND_WND_CLASS);
    }
    if (request.hwndParent != nullptr && findWindow(request.hwndParent) == nullptr) {
        return failed(ERROR_INVALID_WINDOW_HANDLE);
    }
    if ((static_cast<DWORD>(request.style) & WS_CHILD) != 0 && request.hwndParent == nullptr) {
        return failed(ERROR_TLW_WITH_WSCHILD);
    }
    settle(request);
    const auto window = makeWindow(request, windowClass);
    if (!enroll(window)) {
        return failed(ERROR_NOT_ENOUGH_MEMORY);
    }
    try {
        return finishWindow(*window, request);
    } catch (const std::bad_alloc&) {
        destroyWindow(window->handle);
        return failed(ERROR_NOT_ENOUGH_MEMORY);
    }
}

}  // namespace winlayer
