#include "host/frame/page_view.h"

#include "host/frame/text.h"

namespace host {

namespace {

bool isButton(HWND window) {
    char name[16];
    const int length = GetClassNameA(window, name, sizeof(name));
    return std::string(name, static_cast<std::size_t>(length)) == "Button";
}

ControlView::Mark markOf(HWND window) {
    if (!isButton(window)) return ControlView::Mark::none;
    switch (static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)) & BS_TYPEMASK) {
        case BS_CHECKBOX:
        case BS_AUTOCHECKBOX:
        case BS_RADIOBUTTON:
        case BS_AUTORADIOBUTTON:
            return SendMessageA(window, BM_GETCHECK, 0, 0) == BST_CHECKED ? ControlView::Mark::checked
                                                                          : ControlView::Mark::clear;
        default:
            return ControlView::Mark::none;
    }
}

}  // namespace

std::vector<ControlView> viewPage(HWND page) {
    std::vector<ControlView> controls;
    for (HWND child = GetWindow(page, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if ((GetWindowLongA(child, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE)) == 0) continue;
        std::string text = windowText(child);
        if (text.empty()) continue;
        controls.push_back(
            {GetDlgCtrlID(child), std::move(text), IsWindowEnabled(child) != FALSE, markOf(child)});
    }
    return controls;
}

}  // namespace host
