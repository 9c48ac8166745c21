#pragma once
#include <windows.h>

// What a frame that runs without its user puts in place of message boxes and help windows. Each function
// gets `context` first; texts are 8-bit and valid during the call.
struct QXHandlers {
    void* context;
    // Gives the identifier of the button pressed, as the message box would.
    int(WINAPI* messageBox)(void* context, HWND page, const char* text, const char* caption, UINT style);
    void(WINAPI* help)(void* context, HWND page, DWORD topic, const char* text);
};

extern "C" {
// Installs a copy of the handlers for the whole process; null brings the windows back.
void WINAPI QXInstallHandlers(const QXHandlers* handlers);
}
