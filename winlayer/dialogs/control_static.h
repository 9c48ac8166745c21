#pragma once
#include "winlayer/windows/control.h"

namespace winlayer {

// STATIC: a text or an icon. Without SS_NOTIFY the mouse passes through it.
class StaticControl : public Control {
public:
    explicit StaticControl(Window& window);
    LRESULT message(UINT message, WPARAM wParam, LPARAM lParam) override;

    HICON icon() const { return icon_; }

private:
    HICON icon_ = nullptr;
};

}  // namespace winlayer
