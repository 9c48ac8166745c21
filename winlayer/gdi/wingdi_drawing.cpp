// Bitmaps and drawing with them.

#include <limits>
#include <utility>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/gdi/bitmap_data.h"
#include "winlayer/gdi/graphics.h"
#include "winlayer/gdi/surface_drawing.h"
#include "winlayer/modules/modules.h"

namespace winlayer {
namespace {

constexpr std::uint32_t black = 0xFF000000;
constexpr std::int64_t mostPixels = 1 << 26;

// Null, with the last error set, for an invalid context.
DeviceContext* contextOf(HDC handle) {
    DeviceContext* const context = graphics().context(handle);
    if (context == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
    }
    return context;
}

HBITMAP addBitmap(Surface surface, WORD bits) {
    Bitmap bitmap{std::make_shared<Surface>(std::move(surface)), bits};
    return static_cast<HBITMAP>(graphics().add(std::move(bitmap)));
}

BOOL copy(HDC to, const Placement& target, HDC from, const Placement& source, DWORD operation) {
    const DeviceContext* const targetContext = contextOf(to);
    const DeviceContext* const sourceContext = targetContext != nullptr ? contextOf(from) : nullptr;
    if (sourceContext == nullptr) {
        return FALSE;
    }
    if (operation != SRCCOPY) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    stretch(*sourceContext->surface, source, *targetContext->surface, target, targetContext->stretchMode);
    return TRUE;
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

HBITMAP WINAPI CreateCompatibleBitmap(HDC context, int width, int height) try {
    if (denied(__func__) || contextOf(context) == nullptr) {
        return nullptr;
    }
    if (width < 0 || height < 0) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    if (width == 0 || height == 0) {
        return addBitmap(makeSurface(1, 1, black), 1);
    }
    if (std::int64_t{width} * height > mostPixels) {
        return failed(ERROR_NOT_ENOUGH_MEMORY);
    }
    return addBitmap(makeSurface(width, height, black), 32);
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

HBITMAP WINAPI LoadBitmapA(HINSTANCE module, LPCSTR name) try {
    if (denied(__func__)) {
        return nullptr;
    }
    const Modules& modules = winlayer::Modules::current();
    std::size_t place = Resources::none;
    if (!succeeded(modules.findResource(module, ResourceId(RT_BITMAP), ResourceId(name), place))) {
        return nullptr;
    }
    std::optional<DecodedBitmap> bitmap = decodeBitmap(modules.resourceAt(module, place)->data);
    if (!bitmap) {
        return failed(ERROR_INVALID_DATA);
    }
    return addBitmap(std::move(bitmap->surface), bitmap->monochrome ? 1 : 32);
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

int WINAPI SetStretchBltMode(HDC handle, int mode) {
    DeviceContext* const context = denied(__func__) ? nullptr : contextOf(handle);
    if (context == nullptr) {
        return 0;
    }
    if (mode < BLACKONWHITE || mode > HALFTONE) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    return std::exchange(context->stretchMode, mode);
}

BOOL WINAPI BitBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY,
                   DWORD operation) try {
    return denied(__func__) ? FALSE
                            : copy(to, {x, y, width, height}, from, {fromX, fromY, width, height}, operation);
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI StretchBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY,
                       int fromWidth, int fromHeight, DWORD operation) try {
    return denied(__func__)
               ? FALSE
               : copy(to, {x, y, width, height}, from, {fromX, fromY, fromWidth, fromHeight}, operation);
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

COLORREF WINAPI GetPixel(HDC handle, int x, int y) {
    constexpr COLORREF none = std::numeric_limits<COLORREF>::max();
    const DeviceContext* const context = denied(__func__) ? nullptr : contextOf(handle);
    const bool found = context != nullptr && contains(*context->surface, x, y);
    return found ? toColor(pixelAt(*context->surface, x, y)) : none;
}

COLORREF WINAPI SetPixel(HDC handle, int x, int y, COLORREF color) {
    constexpr COLORREF none = std::numeric_limits<COLORREF>::max();
    DeviceContext* const context = denied(__func__) ? nullptr : contextOf(handle);
    if (context == nullptr || !contains(*context->surface, x, y)) {
        return none;
    }
    pixelAt(*context->surface, x, y) = toPixel(color);
    return color;
}

int WINAPI FillRect(HDC handle, const RECT* area, HBRUSH brush) try {
    DeviceContext* const context = denied(__func__) ? nullptr : contextOf(handle);
    COLORREF color = 0;
    if (context == nullptr || area == nullptr || !graphics().brushColor(brush, color)) {
        return 0;
    }
    fill(*context->surface, *area, toPixel(color));
    return 1;
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}
