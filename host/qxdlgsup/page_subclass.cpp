#include "host/qxdlgsup/page_subclass.h"

#include "host/protocol.h"

namespace qxdlgsup {

namespace {

// Window property that holds a page's original procedure.
constexpr const char* formerProcedure = "QXDLGSUP_FORMER";

LRESULT CALLBACK pageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto former = reinterpret_cast<WNDPROC>(GetPropA(page, formerProcedure));
    if (message == host::messagePageShowing) {
        SendMessageA(GetParent(page), host::messageLayOutPage, 0, reinterpret_cast<LPARAM>(page));
    } else if (message == WM_NCDESTROY) {
        SetWindowLongPtrA(page, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former));
        RemovePropA(page, formerProcedure);
    } else if (message == WM_DESTROY) {
        SendMessageA(GetParent(page), host::messagePageGone, 0, reinterpret_cast<LPARAM>(page));
    }
    return CallWindowProcA(former, page, message, wParam, lParam);
}

}  // namespace

void subclassPage(HWND page) {
    if (!IsWindow(page) || GetPropA(page, formerProcedure)) return;
    const LONG_PTR former = GetWindowLongPtrA(page, GWLP_WNDPROC);
    if (!SetPropA(page, formerProcedure, reinterpret_cast<HANDLE>(former))) return;
    SetWindowLongPtrA(page, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(pageProcedure));
}

}  // namespace qxdlgsup
