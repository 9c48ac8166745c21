#pragma once
#include "winlayer/windows/window_class.h"

namespace winlayer {

// The window classes that Windows has from the start: dialogs, buttons, static texts.
void addSystemClasses(WindowClasses& classes);

// RICHED32.DLL brings a window class with it: loading the module registers it, unloading removes it.
void addRichEditClass(WindowClasses& classes);
void removeRichEditClass(WindowClasses& classes);

}  // namespace winlayer
