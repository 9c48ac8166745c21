#pragma once
#include "winlayer/windows/control.h"

namespace winlayer {

// BUTTON: push buttons, check boxes, radio buttons and group boxes.
class ButtonControl : public Control {
public:
    using Control::Control;
    LRESULT message(UINT message, WPARAM wParam, LPARAM lParam) override;

    bool checked() const { return check_ == BST_CHECKED; }
    bool pushed() const { return pushed_; }
    bool isDefault() const { return type() == BS_DEFPUSHBUTTON; }

private:
    DWORD type() const;
    bool isPush() const { return type() == BS_PUSHBUTTON || type() == BS_DEFPUSHBUTTON; }
    bool isRadio() const { return type() == BS_RADIOBUTTON || type() == BS_AUTORADIOBUTTON; }
    LRESULT dialogCode() const;
    LRESULT setCheck(UINT check);
    void setPushed(bool pushed);
    void changeStyle(DWORD style);
    void press();
    void release(bool click);
    void click();
    void checkAlone();
    void notify(WORD code);
    bool contains(LPARAM point) const;
    void changed();

    UINT check_ = BST_UNCHECKED;
    bool pushed_ = false;
    bool byMouse_ = false;  // the current press came from the mouse
};

}  // namespace winlayer
