#include "pages.h"

#include "component/qxdlgsup.h"
#include "host/protocol.h"
#include "sample_resources.h"

namespace {

using host::Button;

bool is(WPARAM wParam, Button button) {
    return LOWORD(wParam) == static_cast<WORD>(button);
}

void go(Pages& pages, HWND from, HWND to) {
    ShowWindow(from, SW_HIDE);
    pages.show(to);
    SendMessageA(to, WM_ACTIVATE, 1, 0);
}

void status(const Pages& pages, const char* text) {
    SendMessageA(pages.frame, host::messageStatus, 0, reinterpret_cast<LPARAM>(text));
}

void setText(HWND page, const char* text) {
    SetWindowTextA(GetDlgItem(page, CONTROL_TEXT), text);
}

// Asks until the answer is not OK: each OK is one round of the task.
void doTask(const Pages& pages) {
    SendMessageA(pages.frame, host::messageProgressRange, 0, MAKELPARAM(0, 100));
    QXSetWizButtons(pages.work, 0x1A);
    QXEnableWizButtons(pages.work, 0, 0x1A);
    QXEnableHomeButton(pages.work, FALSE);
    setText(pages.work, "Bitte warten...");
    for (int round = 1;; ++round) {
        status(pages,
               "Pr\xFC"
               "fung l\xE4uft");
        SendMessageA(pages.frame, host::messageProgress, 0, 10 * round);
        if (QXMessageBox(pages.work, "Noch einmal?\nSicher?",
                         "\xDC"
                         "bung",
                         MB_OKCANCEL) != IDOK)
            break;
    }
    QXMessageBox(pages.work, "Genug.", "Ende", MB_OK);
    status(pages, "");
    SendMessageA(pages.frame, host::messageProgressRange, 0, 0);
    setText(pages.work, "Fertig.");
    QXSetWizButtons(pages.work, 0x282);
    QXEnableWizButtons(pages.work, 0x29A, 0);
    QXEnableHomeButton(pages.work, TRUE);
}

bool onChoiceCommand(Pages& pages, WPARAM wParam) {
    if (is(wParam, Button::next)) {
        go(pages, pages.choice, pages.work);
    } else if (is(wParam, Button::cancel)) {
        PostMessageA(pages.frame, host::messageLeave, 0, 0);
    } else if (is(wParam, Button::help)) {
        QXHelp(pages.choice, 802);
    } else {
        return false;
    }
    return true;
}

bool onWorkCommand(Pages& pages, WPARAM wParam) {
    if (is(wParam, Button::next)) {
        doTask(pages);
    } else if (is(wParam, Button::back) || is(wParam, Button::finish)) {
        go(pages, pages.work, pages.choice);
    } else if (is(wParam, Button::help)) {
        QXHelp(pages.work, 1);
    } else if (is(wParam, Button::cancel)) {
        PostMessageA(pages.frame, host::messageLeave, 0, 0);
    } else {
        return false;
    }
    return true;
}

void activate(const Pages& pages, HWND page) {
    QXSetWizButtons(page, page == pages.choice ? 0x212 : 0x21A);
    QXEnableHomeButton(page, TRUE);
}

INT_PTR CALLBACK pageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        QXSubclassDialog(page);
        SetWindowLongPtrA(page, DWLP_USER, lParam);
        const LRESULT font = SendMessageA(GetParent(page), host::messageHeadingFont, 0, 0);
        SendMessageA(GetDlgItem(page, CONTROL_HEADING), WM_SETFONT, static_cast<WPARAM>(font), 0);
        SendMessageA(GetDlgItem(page, CONTROL_FIRST), BM_SETCHECK, BST_CHECKED, 0);
        return TRUE;
    }
    auto* const pages = reinterpret_cast<Pages*>(GetWindowLongPtrA(page, DWLP_USER));
    if (!pages) return FALSE;
    if (message == WM_ACTIVATE) {
        activate(*pages, page);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    return page == pages->choice ? onChoiceCommand(*pages, wParam) : onWorkCommand(*pages, wParam);
}

}  // namespace

void Pages::show(HWND page) {
    if (!choice) {
        const auto parameter = reinterpret_cast<LPARAM>(this);
        choice = CreateDialogParamA(module, MAKEINTRESOURCEA(PAGE_CHOICE), frame, pageProcedure, parameter);
        work = CreateDialogParamA(module, MAKEINTRESOURCEA(PAGE_WORK), frame, pageProcedure, parameter);
        page = choice;
    }
    SendMessageA(page, host::messagePageShowing, 0, 0);
    SendMessageA(frame, host::messageCurrentPage, 7, reinterpret_cast<LPARAM>(page));
    ShowWindow(page, SW_SHOW);
    activate(*this, page);
}

void Pages::destroy() {
    DestroyWindow(choice);
    DestroyWindow(work);
}
