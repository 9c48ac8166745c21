#include "winlayer/windows/window_geometry.h"

#include <algorithm>

#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

constexpr LONG captionHeight = 19;
constexpr LONG menuHeight = 19;

}  // namespace

// The classic look at 96 dots per inch: a dialog frame is 3 pixels wide, a sizing frame 4, a plain border 1;
// a sunken client edge adds 2, a static edge 1.
RECT borders(DWORD style, DWORD exStyle, bool menu) {
    const bool dialogFrame = (style & WS_DLGFRAME) != 0 || (exStyle & WS_EX_DLGMODALFRAME) != 0;
    LONG width = 0;
    if ((style & WS_THICKFRAME) != 0) {
        width = (style & (WS_BORDER | WS_DLGFRAME)) != 0 || (exStyle & WS_EX_DLGMODALFRAME) != 0 ? 4 : 3;
    } else if (dialogFrame) {
        width = 3;
    } else {
        width = ((exStyle & WS_EX_STATICEDGE) != 0 ? 1 : 0) + ((style & WS_BORDER) != 0 ? 1 : 0);
    }
    RECT border{width, width, width, width};
    if ((style & WS_CAPTION) == WS_CAPTION) {
        border.top += captionHeight;
    }
    if (menu) {
        border.top += menuHeight;
    }
    if ((exStyle & WS_EX_CLIENTEDGE) != 0) {
        border = {border.left + 2, border.top + 2, border.right + 2, border.bottom + 2};
    }
    return border;
}

SIZE clientSize(const Window& window) {
    const RECT border = borders(window.style, window.exStyle);
    return {std::max<LONG>(0, widthOf(window.place) - border.left - border.right),
            std::max<LONG>(0, heightOf(window.place) - border.top - border.bottom)};
}

POINT windowOrigin(const Window& window) {
    POINT origin{window.place.left, window.place.top};
    if (const auto parent = findWindow(window.parent)) {
        const POINT base = clientOrigin(*parent);
        origin = {origin.x + base.x, origin.y + base.y};
    }
    return origin;
}

POINT clientOrigin(const Window& window) {
    const POINT origin = windowOrigin(window);
    const RECT border = borders(window.style, window.exStyle);
    return {origin.x + border.left, origin.y + border.top};
}

}  // namespace winlayer
