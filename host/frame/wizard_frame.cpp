#include "host/frame/wizard_frame.h"

#include <commctrl.h>

#include <initializer_list>

#include "host/frame/failure.h"
#include "host/frame/frame_resources.h"

namespace host {

namespace {

constexpr Button allButtons[] = {Button::home,   Button::back,   Button::next,
                                 Button::finish, Button::cancel, Button::help};

// In dialog units. The template's page area is higher, which leaves space around the picture.
constexpr LONG largestPageHeight = 180;

// Null for a page without tab stops.
HWND firstTabStop(HWND page) {
    const HWND stop = GetNextDlgTabItem(page, nullptr, FALSE);
    return stop && (GetWindowLongA(stop, GWL_STYLE) & static_cast<LONG>(WS_TABSTOP)) != 0 ? stop : nullptr;
}

HFONT boldFontOf(HWND window) {
    LOGFONTA description{};
    const auto font = reinterpret_cast<HFONT>(SendMessageA(window, WM_GETFONT, 0, 0));
    if (!font || GetObjectA(font, sizeof(description), &description) == 0) return nullptr;
    description.lfWeight = FW_BOLD;
    return CreateFontIndirectA(&description);
}

}  // namespace

WizardFrame::WizardFrame(HINSTANCE instance, FrameEvents& events) : events_(events) {
    InitCommonControls();
    if (!CreateDialogParamA(instance, MAKEINTRESOURCEA(DIALOG_FRAME), nullptr, dialogProcedure,
                            reinterpret_cast<LPARAM>(this))) {
        throw Failure(ExitCode::failure,
                      "cannot make the frame window (error " + std::to_string(GetLastError()) + ")");
    }
}

WizardFrame::~WizardFrame() {
    if (window_) {
        SetWindowLongPtrA(window_, DWLP_USER, 0);
        DestroyWindow(window_);
    }
    if (headingFont_) DeleteObject(headingFont_);
}

void WizardFrame::show() {
    ShowWindow(window_, SW_SHOW);
    keepFocus();
}

bool WizardFrame::press(Button button) {
    if (!buttons_.pressable(button)) return false;
    SendMessageA(control(button), BM_CLICK, 0, 0);
    return true;
}

void WizardFrame::dispatch(MSG& message) {
    if (IsDialogMessageA(window_, &message)) return;
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

void WizardFrame::dispatchWaiting() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) dispatch(message);
}

INT_PTR CALLBACK WizardFrame::dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        const auto frame = reinterpret_cast<WizardFrame*>(lParam);
        frame->window_ = window;
        SetWindowLongPtrA(window, DWLP_USER, lParam);
        frame->initialise();
        return TRUE;
    }
    const auto frame = reinterpret_cast<WizardFrame*>(GetWindowLongPtrA(window, DWLP_USER));
    return frame ? frame->onMessage(message, wParam, lParam) : FALSE;
}

void WizardFrame::initialise() {
    headingFont_ = boldFontOf(window_);
    RECT place{};
    RECT pageArea{};
    RECT largestPage{0, 0, 0, largestPageHeight};
    GetWindowRect(window_, &place);
    GetClientRect(GetDlgItem(window_, CONTROL_PAGE_AREA), &pageArea);
    MapDialogRect(window_, &largestPage);
    leastSize_ = {place.right - place.left, place.bottom - place.top - pageArea.bottom + largestPage.bottom};
    layout_ = FrameLayout(window_);
    layout_.add(CONTROL_PAGE_AREA, {true, true, true, true});
    layout_.add(CONTROL_STATUS, {true, false, true, true});
    layout_.add(CONTROL_PROGRESS, {false, false, true, true});
    layout_.add(CONTROL_SEPARATOR, {true, false, true, true});
    layout_.add(BUTTON_HOME, {true, false, false, true});
    for (const int button : {BUTTON_BACK, BUTTON_NEXT, BUTTON_FINISH, BUTTON_CANCEL, BUTTON_HELP}) {
        layout_.add(button, {false, false, true, true});
    }
    showButtons(buttons_);
}

INT_PTR WizardFrame::answer(LRESULT result) {
    SetWindowLongPtrA(window_, DWLP_MSGRESULT, result);
    return TRUE;
}

INT_PTR WizardFrame::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const ButtonState before = buttons_;
    switch (message) {
        case WM_COMMAND:
            onCommand(LOWORD(wParam));
            return TRUE;
        case WM_ACTIVATE:
            onActivate(LOWORD(wParam) != WA_INACTIVE);
            return TRUE;
        case WM_SETFOCUS:
            keepFocus();
            return TRUE;
        case WM_GETMINMAXINFO:
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = leastSize_;
            return answer(0);
        case WM_SIZE:
            layout_.apply();
            if (page_) layOutPage(page_);
            InvalidateRect(window_, nullptr, TRUE);
            return TRUE;
        case messageLeave:
            leave();
            return answer(0);
        case messageCurrentPage:
            setCurrentPage(reinterpret_cast<HWND>(lParam), wParam);
            return answer(0);
        case messageProgressRange:
            setProgressRange(lParam);
            return answer(0);
        case messageProgress:
            SendMessageA(GetDlgItem(window_, CONTROL_PROGRESS), PBM_SETPOS, static_cast<WPARAM>(lParam), 0);
            events_.progress(static_cast<int>(lParam));
            return answer(0);
        case messageStatus:
            setStatus(reinterpret_cast<const char*>(lParam));
            return answer(0);
        case messageHeadingFont:
            return answer(reinterpret_cast<LRESULT>(headingFont_));
        case messageLayOutPage:
            layOutPage(reinterpret_cast<HWND>(lParam));
            return answer(0);
        case messageSetButtons:
            buttons_.offer(static_cast<DWORD>(wParam));
            break;
        case messageEnableButtons:
            buttons_.enable(static_cast<DWORD>(wParam), static_cast<DWORD>(lParam));
            break;
        case messageEnableHome:
            buttons_.enableHome(wParam != 0);
            break;
        case messagePageGone:
            if (page_ == reinterpret_cast<HWND>(lParam)) page_ = nullptr;
            return answer(0);
        default:
            return FALSE;
    }
    showButtons(before);
    return answer(0);
}

// Restores the focus to the last control if that can still be used, otherwise to a useful one.
void WizardFrame::onActivate(bool active) {
    if (!active) {
        lastFocus_ = GetFocus();
    } else {
        if (IsChild(window_, lastFocus_)) giveFocus(lastFocus_);
        keepFocus();
    }
}

// Escape and the window's close button arrive as IDCANCEL and act like Cancel.
void WizardFrame::onCommand(WORD id) {
    if (id == IDCANCEL) {
        if (page_) {
            command(Button::cancel);
        } else {
            leave();
        }
        return;
    }
    for (const Button button : allButtons) {
        if (id == static_cast<WORD>(button)) command(button);
    }
}

void WizardFrame::command(Button button) {
    if (!buttons_.pressable(button)) return;
    if (button != Button::home) {
        sendToPage(button);
        return;
    }
    // A working page would run to its end and keep the user waiting: Cancel stops it.
    if (commandsUnderWay_ > 0) sendToPage(Button::cancel);
    leave();
}

void WizardFrame::sendToPage(Button button) {
    if (!page_) return;
    ++commandsUnderWay_;
    SendMessageA(page_, WM_COMMAND, static_cast<WORD>(button), 0);
    --commandsUnderWay_;
}

void WizardFrame::leave() {
    if (left_) return;
    left_ = true;
    events_.leaving();
}

void WizardFrame::setCurrentPage(HWND page, WPARAM argument) {
    page_ = page;
    pageArrives_ = true;
    events_.pageShown(page, argument);
}

// Windows sends no WM_SIZE to a page whose size does not change, but it may never have laid out its controls.
void WizardFrame::layOutPage(HWND page) {
    const RECT area = layout_.rectangle(CONTROL_PAGE_AREA);
    const LONG width = area.right - area.left;
    const LONG height = area.bottom - area.top;
    RECT before{};
    GetClientRect(page, &before);
    SetWindowPos(page, HWND_TOP, area.left, area.top, width, height, SWP_NOACTIVATE);
    RECT after{};
    GetClientRect(page, &after);
    if (before.right == after.right && before.bottom == after.bottom) {
        SendMessageA(page, WM_SIZE, SIZE_RESTORED, MAKELPARAM(after.right, after.bottom));
    }
}

void WizardFrame::setProgressRange(LPARAM range) {
    const HWND bar = GetDlgItem(window_, CONTROL_PROGRESS);
    if (range != 0) SendMessageA(bar, PBM_SETRANGE, 0, range);
    SendMessageA(bar, PBM_SETPOS, 0, 0);
    ShowWindow(bar, range != 0 ? SW_SHOW : SW_HIDE);
    events_.progressRange(LOWORD(range), HIWORD(range));
}

void WizardFrame::setStatus(const char* text) {
    const char* shown = text ? text : "";
    SetWindowTextA(GetDlgItem(window_, CONTROL_STATUS), shown);
    events_.status(shown);
}

// New buttons appear before others disappear, so that the focus can move between them.
void WizardFrame::showButtons(const ButtonState& before) {
    for (const bool pressable : {true, false}) {
        for (const Button button : allButtons) {
            if (buttons_.pressable(button) != pressable) continue;
            EnableWindow(control(button), buttons_.enabled(button));
            ShowWindow(control(button), buttons_.offered(button) ? SW_SHOW : SW_HIDE);
        }
        if (pressable) keepFocus();
    }
    const auto button = buttons_.defaultButton();
    SendMessageA(window_, DM_SETDEFID, button ? static_cast<WPARAM>(*button) : 0, 0);
    if (!(buttons_ == before)) events_.buttonsChanged();
}

// The focus must not be lost, nor stay on a button that disappears. A new page gets it at its first tab stop;
// if it has none, the button that leads on gets it. Home never gets it automatically: Enter would leave the
// wizard.
void WizardFrame::keepFocus() {
    if (GetActiveWindow() != window_) return;
    const bool arrived = pageArrives_ && page_ && IsWindowVisible(page_);
    if (!arrived && focusCanStay()) return;
    pageArrives_ = pageArrives_ && !arrived;
    HWND target = arrived ? firstTabStop(page_) : nullptr;
    if (const auto button = buttons_.defaultButton(); button && !target) target = control(*button);
    if (target) {
        giveFocus(target);
    } else {
        SetFocus(window_);
    }
}

void WizardFrame::giveFocus(HWND control) const {
    SendMessageA(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

bool WizardFrame::focusCanStay() const {
    const HWND focus = GetFocus();
    for (const Button button : allButtons) {
        if (focus == control(button)) return buttons_.pressable(button);
    }
    return focus && focus != window_ && IsWindowVisible(focus) && IsWindowEnabled(focus);
}

HWND WizardFrame::control(Button button) const {
    return GetDlgItem(window_, static_cast<int>(button));
}

}  // namespace host
