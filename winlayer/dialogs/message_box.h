#pragma once
#include "winlayer/dialogs/dialog_template.h"

namespace winlayer {

// MessageBoxA: a modal dialog with the text (control 65535), the icon (control 20) and the buttons that the
// style asks for, in the machine's language. Gives the pressed button's identifier; 0 with the last error set
// when the style or the owner is none or the box could not be made.
int showMessageBox(HWND owner, LPCSTR text, LPCSTR caption, UINT style);

}  // namespace winlayer
