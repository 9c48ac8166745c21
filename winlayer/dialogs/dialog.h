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

// Null with the last error set when the dialog or (without DS_NOFAILCREATE) a control could not be made.
HWND createDialog(const DialogTemplate& dialog, const DialogRequest& request);
// Runs the dialog until EndDialog, with its owner disabled, and gives EndDialog's result; -1 when it could
// not be made, 0 when the parent is none.
INT_PTR runDialog(const DialogTemplate& dialog, const DialogRequest& request);
// A modal dialog's loop then ends with the result; any other is only hidden. False for what is no dialog.
bool endDialog(HWND dialog, INT_PTR result);

// Handles a message for the dialog or a window in it: keys that move among controls or choose one. False when
// the message is for others.
bool handleDialogMessage(HWND dialog, const MSG& message);

// Gives a control the focus as the keyboard does, which makes a push button the default one.
void focusControl(const Window& dialog, HWND control);
// Draws the push button with the focus as the default one, or else the one that is.
void showWhatEnterPresses(const Window& dialog);
void setDefaultButton(Window& dialog, WORD id);

// The font as CreateFontIndirectA takes it.
LOGFONTA describe(const DialogFont& font);
// Makes the font of the dialog's template and tells the dialog (WM_SETFONT).
void giveDialogFont(Window& dialog);

// Pixels of a place in dialog units, 4 by 8 of which are `baseUnits`.
RECT fromDialogUnits(const SIZE& baseUnits, const RECT& rectangle);
// Base units of a font; without one, of the system's.
SIZE baseUnitsOf(const std::optional<DialogFont>& font);

}  // namespace winlayer
