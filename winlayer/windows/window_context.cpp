// Device contexts on the surfaces of windows.
#include <algorithm>

#include "winlayer/gdi/graphics.h"
#include "winlayer/gdi/surface_drawing.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

std::uint32_t facePixel() {
    COLORREF color = 0;
    systemColor(COLOR_3DFACE, color);
    return toPixel(color);
}

// The surface in the size of the client area; a new one is filled with the face colour.
std::shared_ptr<Surface> surfaceOf(Window& window) {
    const SIZE size = clientSize(window);
    if (window.surface == nullptr || window.surface->width != size.cx || window.surface->height != size.cy) {
        const auto pixels = static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy);
        window.surface = std::make_shared<Surface>(
            Surface{size.cx, size.cy, std::vector<std::uint32_t>(pixels, facePixel())});
    }
    return window.surface;
}

HDC openContext(HWND handle, const std::shared_ptr<Surface>& surface) {
    const HDC context = graphics().open(surface);
    try {
        windows().contexts[context] = {handle, surface};
    } catch (...) {
        graphics().close(context);
        throw;
    }
    return context;
}

}  // namespace

// A context of the screen has no pixels: drawing has no effect.
HDC getContext(HWND handle) {
    if (handle == nullptr) {
        return openContext(nullptr, std::make_shared<Surface>());
    }
    const auto window = findWindowOrSetLastError(handle);
    return window != nullptr ? openContext(handle, surfaceOf(*window)) : nullptr;
}

bool releaseContext(HWND handle, HDC context) {
    const auto found = windows().contexts.find(context);
    if (found == windows().contexts.end() || found->second.window != handle) {
        return false;
    }
    windows().contexts.erase(found);
    graphics().close(context);
    if (findWindow(handle) != nullptr) {
        windows().peer().painted(handle);
    }
    return true;
}

HDC beginPaint(HWND handle, PAINTSTRUCT& paint) {
    paint = {};
    const HDC context = getContext(handle);
    if (context == nullptr) {
        return nullptr;
    }
    const auto window = findWindow(handle);
    paint.hdc = context;
    paint.rcPaint = window->update;
    const bool erased = eraseBackground(*window, context);
    validate(*window);
    paint.fErase = erased ? FALSE : TRUE;
    return context;
}

bool endPaint(HWND window, const PAINTSTRUCT& paint) {
    return releaseContext(window, paint.hdc);
}

bool fillBackground(const Window& window, HDC context) {
    const DeviceContext* target = graphics().context(context);
    COLORREF color = 0;
    if (target == nullptr || !graphics().brushColor(window.windowClass->background, color)) {
        return false;
    }
    std::vector<std::uint32_t>& pixels = target->surface->pixels;
    std::fill(pixels.begin(), pixels.end(), toPixel(color));
    return true;
}

}  // namespace winlayer
