#pragma once
#include <windows.h>

// A dialog window created from a template, and the object that receives its messages.
class CBaseDialog {
public:
    CBaseDialog() = default;
    CBaseDialog(const CBaseDialog&) = delete;
    CBaseDialog& operator=(const CBaseDialog&) = delete;

    // Handles a message of the window. *handled: TRUE when the result is the answer; this class handles none.
    virtual LONG OnMessage(UINT message, WPARAM wParam, LPARAM lParam, BOOL* handled);

    // Creates the window from a template of `instance` and ties it to this object. modal 0: returns 0, or the
    // system's error code (never 0) when there is no window; otherwise runs the dialog and returns its
    // result.
    int CreateDialogWindow(HINSTANCE instance, HWND parent, WORD templateId, BOOL modal);

    // Null until the window has received WM_INITDIALOG.
    HWND Window() const { return hwnd_; }

protected:
    // Detaches the object from its window and destroys the window if it still exists.
    ~CBaseDialog();

    // Whether the window still exists and belongs to this object.
    bool HasWindow() const;

private:
    // Passes every message to the window's object; exceptions end here.
    static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    BOOL modal_ = TRUE;
    HWND hwnd_ = nullptr;
};
