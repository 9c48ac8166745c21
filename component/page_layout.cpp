#include "page_layout.h"

#include <string>

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

LONG TextHeight(HWND page, int control, LONG width) {
    const HWND window = ::GetDlgItem(page, control);
    std::string text(static_cast<std::size_t>(::GetWindowTextLengthA(window)) + 1, '\0');
    const int length = ::GetWindowTextA(window, text.data(), static_cast<int>(text.size()));
    const HDC context = window == nullptr ? nullptr : ::GetDC(window);
    if (context == nullptr) {
        return 0;
    }
    const HGDIOBJ before =
        ::SelectObject(context, reinterpret_cast<HGDIOBJ>(::SendMessageA(window, WM_GETFONT, 0, 0)));
    RECT needed{0, 0, width, 0};
    ::DrawTextA(context, text.c_str(), length, &needed, DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS);
    ::SelectObject(context, before);
    ::ReleaseDC(window, context);
    return needed.bottom;
}

void Move(HWND page, int control, int left, int top, int width, int height, bool redraw) {
    ::MoveWindow(::GetDlgItem(page, control), left, top, width, height, redraw ? TRUE : FALSE);
}

}  // namespace page_layout
