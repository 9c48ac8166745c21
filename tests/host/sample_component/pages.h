#pragma once
#include <windows.h>

// The sample's two pages: one to choose a task, one that does it, step by step and with a question. Its
// window style values are those of a component's pages: child dialogs of the frame.
struct Pages {
    HINSTANCE module = nullptr;
    HWND frame = nullptr;
    HWND choice = nullptr;
    HWND work = nullptr;

    void show(HWND page);
    void destroy();
};
