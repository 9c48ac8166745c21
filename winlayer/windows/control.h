#pragma once
#include <memory>

#include "winlayer/include/windows.h"

namespace winlayer {

struct Window;

// The behaviour and state of one control, for its window procedure. It lives as long as its window.
class Control {
public:
    explicit Control(Window& window) : window_(window) {}
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;
    virtual ~Control() = default;

    virtual LRESULT message(UINT message, WPARAM wParam, LPARAM lParam) = 0;

protected:
    Window& window_;
};

// Handles the messages that a control does not handle itself: it keeps a font and leaves painting to the
// display backend.
LRESULT defaultControlMessage(Window& window, UINT message, WPARAM wParam, LPARAM lParam);

using ControlMaker = std::unique_ptr<Control> (*)(Window&);
LRESULT controlProcedure(ControlMaker make, HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// The window procedure of a control class.
template <class T>
LRESULT CALLBACK procedureOf(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const ControlMaker make = [](Window& owner) -> std::unique_ptr<Control> {
        return std::make_unique<T>(owner);
    };
    return controlProcedure(make, window, message, wParam, lParam);
}

}  // namespace winlayer
