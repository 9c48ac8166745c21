#pragma once
#include <windows.h>

// Messages between the wizard frame, the dialog-support library and the pages. docs/host-protocol.md
// describes them for authors of components and other hosts.
namespace host {

// The frame's buttons. The value identifies the button's control and the WM_COMMAND that the frame sends to
// the current page; Home is handled by the frame.
enum class Button : WORD {
    cancel = 33769,
    back = 33771,
    next = 33772,
    finish = 33775,
    help = 33777,
    home = 33780,
};

// The buttons that a page offers and enables by mask. Home is enabled separately.
struct WizardButton {
    Button button;
    DWORD mask;
    const char* name;  // as in scripts and transcripts
};
inline constexpr WizardButton wizardButtons[] = {
    {Button::back, 0x008, "back"},     {Button::next, 0x010, "next"}, {Button::finish, 0x080, "finish"},
    {Button::cancel, 0x002, "cancel"}, {Button::help, 0x200, "help"},
};

// From a page to the frame.
inline constexpr UINT messageLeave = 0x806C;          // posted: leave the component
inline constexpr UINT messageCurrentPage = 0x806D;    // wParam: argument of the page; lParam: its window
inline constexpr UINT messageProgressRange = 0x841A;  // lParam: low word start, high word end; 0: no progress
inline constexpr UINT messageProgress = 0x841B;       // lParam: position
inline constexpr UINT messageStatus = 0x841C;         // lParam: 8-bit text
inline constexpr UINT messageHeadingFont = 0x842C;    // result: a font handle or 0

// From a page to its own window, just before it is shown; the dialog-support library sees it first.
inline constexpr UINT messagePageShowing = 0x80F5;

// From the dialog-support library to the frame; lParam is the page unless stated.
inline constexpr UINT messageLayOutPage = WM_APP + 1;     // before the page is shown
inline constexpr UINT messageSetButtons = WM_APP + 2;     // wParam: mask of the buttons offered
inline constexpr UINT messageEnableButtons = WM_APP + 3;  // wParam: mask to enable; lParam: mask to disable
inline constexpr UINT messageEnableHome = WM_APP + 4;     // wParam: TRUE or FALSE
inline constexpr UINT messagePageGone = WM_APP + 5;       // the page's window is being destroyed

}  // namespace host
