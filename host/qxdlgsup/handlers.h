#pragma once
#include <windows.h>

// Handlers that replace message boxes and help windows when a frame runs without a user. Each function gets
// `context` first; texts are 8-bit and valid during the call.
struct QXHandlers {
    void* context;
    // Returns the identifier of the button pressed, like the message box.
    int(WINAPI* messageBox)(void* context, HWND page, const char* text, const char* caption, UINT style);
    void(WINAPI* help)(void* context, HWND page, DWORD topic, const char* text);
};

extern "C" {
// Installs a copy of the handlers for the entire process; null restores the windows.
void WINAPI QXInstallHandlers(const QXHandlers* handlers);
}
