#include "winlayer/windows/window_tree.h"

#include "winlayer/base/gate.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {

std::shared_ptr<Window> findWindow(HWND window) {
    return windows().find(window);
}

std::shared_ptr<Window> findWindowOrSetLastError(HWND window) {
    auto found = findWindow(window);
    if (found == nullptr) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    }
    return found;
}

std::shared_ptr<Window> windowFor(const char* function, HWND window) {
    return denied(function) ? nullptr : findWindowOrSetLastError(window);
}

std::vector<HWND>& siblingsOf(const Window& window) {
    const auto parent = findWindow(window.parent);
    return parent != nullptr ? parent->children : windows().topLevel;
}

HWND rootOf(HWND window) {
    auto current = findWindow(window);
    while (current != nullptr && current->parent != nullptr) {
        window = current->parent;
        current = findWindow(window);
    }
    return window;
}

bool isBelow(HWND parent, HWND window) {
    for (auto current = findWindow(window); current != nullptr && current->parent != nullptr;
         current = findWindow(current->parent)) {
        if (current->parent == parent) {
            return true;
        }
    }
    return false;
}

bool isVisible(const Window& window) {
    const auto parent = findWindow(window.parent);
    return window.has(WS_VISIBLE) && (parent == nullptr || isVisible(*parent));
}

bool takesInput(const Window& window) {
    const auto parent = findWindow(window.parent);
    return !window.has(WS_DISABLED) && (parent == nullptr || takesInput(*parent));
}

std::shared_ptr<Window> childById(const Window& parent, int id) {
    for (const HWND handle : parent.children) {
        auto child = findWindow(handle);
        if (child != nullptr && child->id == id) {
            return child;
        }
    }
    return nullptr;
}

}  // namespace winlayer
