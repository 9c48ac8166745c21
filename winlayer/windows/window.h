#pragma once
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "winlayer/windows/control.h"
#include "winlayer/windows/dialog_state.h"
#include "winlayer/windows/window_class.h"

namespace winlayer {

struct Surface;

// One window. Plain data: the headers beside this one declare its operations, by concern.
struct Window {
    HWND handle = nullptr;
    DWORD thread = 0;
    std::shared_ptr<const WindowClass> windowClass;
    HWND parent = nullptr;       // of a child; null for a top-level window
    HWND owner = nullptr;        // of a top-level window
    std::vector<HWND> children;  // topmost first
    RECT place{};                // in pixels, relative to the parent's client area or the screen
    DWORD style = 0;
    DWORD exStyle = 0;
    LONG_PTR id = 0;
    HINSTANCE instance = nullptr;
    std::string text;  // ANSI
    WNDPROC procedure = nullptr;
    LONG_PTR userData = 0;
    std::vector<BYTE> extra;
    std::map<std::string, HANDLE> properties;
    HFONT font = nullptr;

    bool sizeDue = false;     // WM_SIZE and WM_MOVE are due when it is first shown
    bool destroying = false;  // DestroyWindow is running
    bool toPaint = false;     // `update` is to be painted
    bool toErase = false;     // ... after erasing the background
    RECT update{};            // in client coordinates

    std::shared_ptr<Surface> surface;  // client area; null until first drawn on
    std::unique_ptr<DialogState> dialog;
    std::unique_ptr<Control> control;

    bool isChild() const { return (style & WS_CHILD) != 0; }
    bool has(DWORD bits) const { return (style & bits) == bits; }
};

}  // namespace winlayer
