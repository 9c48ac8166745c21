#pragma once
#include <vector>

#include "winlayer/windows/window.h"

namespace winlayer {

// How the keyboard moves among the controls of a dialog.

// The controls of the same group, in order, the control among them: from one with WS_GROUP to the next.
std::vector<HWND> groupOf(const Window& control);
// The next (previous) control of the group that is shown and enabled; the control itself when it is alone.
HWND nextGroupItem(const Window& control, bool previous);
// The next (previous) control at which the Tab key stops, also inside children that are control parents;
// null starts from the first (last). Gives `control` when there is no other.
HWND nextTabItem(const Window& dialog, HWND control, bool previous);
// All controls of the dialog in their order, also inside children that are control parents; only those that
// are shown.
std::vector<HWND> controlsOf(const Window& dialog);

// The character after the first single '&' of a text, in lower case; 0 when there is none.
char mnemonicOf(const std::string& text);
// The control that a mnemonic means, looked for behind `from` and around; null when there is none.
HWND controlWithMnemonic(const Window& dialog, HWND from, char mnemonic);

}  // namespace winlayer
