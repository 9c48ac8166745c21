#pragma once
#include <vector>

#include "winlayer/windows/window.h"

namespace winlayer {

// Keyboard navigation in a dialog.

// The controls of this control's group, itself included, in order: from one with WS_GROUP to the next.
std::vector<HWND> groupOf(const Window& control);
// The next (previous) visible and enabled control of the group; the control itself if there is no other.
HWND nextGroupItem(const Window& control, bool previous);
// The next (previous) control with a tab stop, including those in child windows that are control parents;
// null starts from the first (last). Returns `control` if there is no other.
HWND nextTabItem(const Window& dialog, HWND control, bool previous);
// All visible controls of the dialog in order, including those in child windows that are control parents.
std::vector<HWND> controlsOf(const Window& dialog);

// The character after the first single '&' of a text, in lower case; 0 if there is none.
char mnemonicOf(const std::string& text);
// The control with a mnemonic, searched after `from` and around; null if there is none.
HWND controlWithMnemonic(const Window& dialog, HWND from, char mnemonic);

}  // namespace winlayer
