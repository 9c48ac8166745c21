#pragma once
#include <windows.h>

// A dialog window made from a template, and the object that its messages go to.
class CBaseDialog {
public:
    CBaseDialog() = default;
    CBaseDialog(const CBaseDialog&) = delete;
    CBaseDialog& operator=(const CBaseDialog&) = delete;

    // Acts on a message of the window. *handled: TRUE when the result is the answer; here nothing is acted
    // on.
    virtual LONG OnMessage(UINT message, WPARAM wParam, LPARAM lParam, BOOL* handled);

    // Makes the window from a template of `instance` and ties it to this object. modal 0: returns 0, or the
    // system's error code (never 0) when there is no window; otherwise runs the dialog and returns its
    // result.
    int CreateDialogWindow(HINSTANCE instance, HWND parent, WORD templateId, BOOL modal);

    // 0 until the window has received WM_INITDIALOG.
    HWND Window() const { return hwnd_; }

protected:
    // Takes the object off its window and destroys a window that still exists.
    ~CBaseDialog();

    // Whether the window still exists and is this object's.
    bool HasWindow() const;

private:
    // Hands every message to the object of the window; exceptions end here.
    static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    BOOL modal_ = TRUE;
    HWND hwnd_ = nullptr;
};
