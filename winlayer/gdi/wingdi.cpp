#include "winlayer/include/wingdi.h"

#include <algorithm>
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/gdi/graphics.h"

namespace winlayer {
namespace {

BOOL answer(bool done) {
    return succeeded(done ? NO_ERROR : ERROR_INVALID_HANDLE) ? TRUE : FALSE;
}

BITMAP describe(const Bitmap& bitmap) {
    BITMAP description{};
    description.bmWidth = bitmap.surface->width;
    description.bmHeight = bitmap.surface->height;
    description.bmWidthBytes = (description.bmWidth * bitmap.bits + 15) / 16 * 2;
    description.bmPlanes = 1;
    description.bmBitsPixel = bitmap.bits;
    return description;
}

// Copies what fits, or returns the size needed.
template <class Description>
int give(const Description& description, int size, LPVOID buffer) {
    const auto whole = static_cast<int>(sizeof description);
    if (buffer == nullptr) {
        return whole;
    }
    const int stored = std::clamp(size, 0, whole);
    std::memcpy(buffer, &description, static_cast<std::size_t>(stored));
    return stored;
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

HDC WINAPI CreateCompatibleDC(HDC context) try {
    if (denied(__func__)) {
        return nullptr;
    }
    if (context != nullptr && graphics().context(context) == nullptr) {
        return failed(ERROR_INVALID_HANDLE);
    }
    return graphics().createMemoryContext();
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

BOOL WINAPI DeleteDC(HDC context) {
    return denied(__func__) ? FALSE : answer(graphics().deleteContext(context));
}

HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ object) try {
    if (denied(__func__)) {
        return nullptr;
    }
    DeviceContext* const target = graphics().context(context);
    HGDIOBJ previous = nullptr;
    const bool selected = target != nullptr && graphics().select(*target, object, previous);
    return answer(selected) != FALSE ? previous : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

BOOL WINAPI DeleteObject(HGDIOBJ object) {
    return denied(__func__) ? FALSE : answer(graphics().remove(object));
}

HGDIOBJ WINAPI GetStockObject(int index) try {
    return denied(__func__) ? nullptr : graphics().stock(index);
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

int WINAPI GetObjectA(HGDIOBJ object, int size, LPVOID buffer) {
    if (denied(__func__)) {
        return 0;
    }
    if (const Bitmap* const bitmap = graphics().find<Bitmap>(object); bitmap != nullptr) {
        const bool tooSmall = buffer != nullptr && size < static_cast<int>(sizeof(BITMAP));
        return tooSmall ? 0 : give(describe(*bitmap), size, buffer);
    }
    if (const Brush* const brush = graphics().find<Brush>(object); brush != nullptr) {
        return give(LOGBRUSH{BS_SOLID, brush->color, 0}, size, buffer);
    }
    if (const Font* const font = graphics().find<Font>(object); font != nullptr) {
        return give(font->description, size, buffer);
    }
    return failed(ERROR_INVALID_HANDLE);
}

HBRUSH WINAPI CreateSolidBrush(COLORREF color) try {
    return denied(__func__) ? nullptr : static_cast<HBRUSH>(graphics().add(Brush{color}));
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

HFONT WINAPI CreateFontIndirectA(const LOGFONTA* description) try {
    if (denied(__func__)) {
        return nullptr;
    }
    if (description == nullptr) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    Font font{*description};
    font.description.lfFaceName[LF_FACESIZE - 1] = 0;
    return static_cast<HFONT>(graphics().add(font));
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

DWORD WINAPI GetSysColor(int index) {
    entered(__func__);
    COLORREF color = 0;
    systemColor(index, color);
    return color;
}

HBRUSH WINAPI GetSysColorBrush(int index) try {
    return denied(__func__) ? nullptr : graphics().systemBrush(index);
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}
