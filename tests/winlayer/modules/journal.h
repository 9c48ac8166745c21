#pragma once
#include <windows.h>

// Messages by which the modules tell the loading thread what happens to them; wParam is their handle.
inline constexpr UINT entryCalled = 0x8000;   // + the reason; lParam: whether the process ends
inline constexpr UINT objectBegins = 0x8010;  // lParam: length of the module's path
inline constexpr UINT objectEnds = 0x8011;    // lParam: as above
inline constexpr int baseModule = 0x100;      // added to the messages of base.dll
inline constexpr int refuserModule = 0x200;   // and of refuser.dll

inline void tell(UINT message, HMODULE module, LPARAM value) {
    PostThreadMessageA(GetCurrentThreadId(), message, reinterpret_cast<WPARAM>(module), value);
}
