#pragma once
#include "winlayer/dialogs/dialog_template.h"

namespace winlayer {

// MessageBoxA: a modal dialog with the text (control 65535), the icon (control 20) and the buttons of the
// style, in the machine's language. Returns the identifier of the pressed button; 0 with the last error set
// if the style or the owner is invalid or the box could not be created.
int showMessageBox(HWND owner, LPCSTR text, LPCSTR caption, UINT style);

}  // namespace winlayer
