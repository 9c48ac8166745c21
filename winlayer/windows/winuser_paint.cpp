#include <limits>
#include <string>
#include <string_view>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/gdi/graphics.h"
#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

using namespace winlayer;

namespace {

constexpr LONG systemFontHeight = 16;  // pixels, of a new context's font

}  // namespace

BOOL WINAPI InvalidateRect(HWND handle, const RECT* rectangle, BOOL erase) try {
    const auto window = windowFor(__func__, handle);
    if (window == nullptr) {
        return FALSE;
    }
    invalidate(*window, rectangle, erase != FALSE);
    return TRUE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

BOOL WINAPI UpdateWindow(HWND handle) try {
    if (denied(__func__) || findWindowOrSetLastError(handle) == nullptr) {
        return FALSE;
    }
    updateWindow(handle);
    return TRUE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

HDC WINAPI BeginPaint(HWND handle, PAINTSTRUCT* paint) try {
    return denied(__func__) ? nullptr : beginPaint(handle, *paint);
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

BOOL WINAPI EndPaint(HWND handle, const PAINTSTRUCT* paint) try {
    entered(__func__);
    return endPaint(handle, *paint) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}

HDC WINAPI GetDC(HWND handle) try {
    return denied(__func__) ? nullptr : getContext(handle);
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

int WINAPI ReleaseDC(HWND handle, HDC context) try {
    entered(__func__);
    return releaseContext(handle, context) ? 1 : 0;
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}

int WINAPI DrawTextA(HDC context, LPCSTR text, int length, LPRECT place, UINT format) try {
    if (denied(__func__)) {
        return 0;
    }
    const DeviceContext* const target = graphics().context(context);
    if (target == nullptr || (format & DT_CALCRECT) == 0) {
        return failed(target == nullptr ? ERROR_INVALID_HANDLE : ERROR_CALL_NOT_IMPLEMENTED);
    }
    const LOGFONTA* const selected = graphics().font(static_cast<HFONT>(target->font));
    LOGFONTA font{};
    font.lfHeight = systemFontHeight;
    const std::string_view measured =
        length < 0 ? std::string_view(text) : std::string_view(text, static_cast<std::size_t>(length));
    const int width =
        (format & DT_WORDBREAK) != 0 ? place->right - place->left : std::numeric_limits<int>::max();
    const SIZE extent =
        windows().peer().textExtent(std::string(measured), selected != nullptr ? *selected : font, width);
    place->right = place->left + extent.cx;
    place->bottom = place->top + extent.cy;
    return extent.cy;
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}
