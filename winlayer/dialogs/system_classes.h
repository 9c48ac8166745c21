#pragma once
#include "winlayer/windows/window_class.h"

namespace winlayer {

// The window classes of Windows itself: dialogs, buttons, static texts.
void addSystemClasses(WindowClasses& classes);

// Loading RICHED32.DLL registers its window class, unloading removes it.
void addRichEditClass(WindowClasses& classes);
void removeRichEditClass(WindowClasses& classes);

}  // namespace winlayer
