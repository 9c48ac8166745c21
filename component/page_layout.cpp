#include "page_layout.h"

namespace page_layout {

RECT Place(HWND page, int control) {
    RECT place{};
    ::GetWindowRect(::GetDlgItem(page, control), &place);
    POINT corners[] = {{place.left, place.top}, {place.right, place.bottom}};
    for (POINT& corner : corners) {
        ::ScreenToClient(page, &corner);
    }
    return {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
}

void Move(HWND page, int control, int left, int top, int width, int height, bool redraw) {
    ::MoveWindow(::GetDlgItem(page, control), left, top, width, height, redraw ? TRUE : FALSE);
}

}  // namespace page_layout
