#pragma once
#include "winlayer/dialogs/dialog_template.h"
#include "winlayer/windows/window.h"

namespace winlayer {

// The dialog manager.

struct DialogRequest {
    HINSTANCE instance = nullptr;
    HWND parent = nullptr;
    DLGPROC procedure = nullptr;
    LPARAM parameter = 0;
};

// Null with the last error set if the dialog or (without DS_NOFAILCREATE) a control could not be created.
HWND createDialog(const DialogTemplate& dialog, const DialogRequest& request);
// Runs the dialog until EndDialog, with its owner disabled, and returns EndDialog's result; -1 if it could
// not be created, 0 if the parent is invalid.
INT_PTR runDialog(const DialogTemplate& dialog, const DialogRequest& request);
// Ends a modal dialog's loop with the result; hides a modeless one. False if it is not a dialog.
bool endDialog(HWND dialog, INT_PTR result);

// Handles a message for the dialog or a window in it: keys that move between controls or activate one. False
// if the caller must dispatch the message.
bool handleDialogMessage(HWND dialog, const MSG& message);

// Sets the focus as the keyboard does, which makes a push button the default one.
void focusControl(const Window& dialog, HWND control);
// Draws as default the push button with the focus, otherwise the dialog's default button.
void showWhatEnterPresses(const Window& dialog);
void setDefaultButton(Window& dialog, WORD id);

// The font's description for CreateFontIndirectA.
LOGFONTA describe(const DialogFont& font);
// Creates the font of the dialog's template and sends WM_SETFONT to the dialog.
void giveDialogFont(Window& dialog);

// Converts dialog units to pixels; `baseUnits` is the size of 4 by 8 units in pixels.
RECT fromDialogUnits(const SIZE& baseUnits, const RECT& rectangle);
// Base units of a font, by default the system's.
SIZE baseUnitsOf(const std::optional<DialogFont>& font);

}  // namespace winlayer
