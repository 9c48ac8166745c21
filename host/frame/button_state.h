#pragma once
#include <optional>

#include "host/protocol.h"

namespace host {

// Which of the frame's buttons a page offers and which of them are enabled. The two masks are independent: a
// button that is disabled stays so when it is offered anew, until it is enabled. At first none is offered and
// each is enabled.
class ButtonState {
public:
    void offer(DWORD mask) { offered_ = mask; }
    void enable(DWORD enable, DWORD disable) { enabled_ = (enabled_ | enable) & ~disable; }
    void enableHome(bool enable) { home_ = enable; }

    bool offered(Button button) const { return button == Button::home || (offered_ & mask(button)) != 0; }
    bool enabled(Button button) const {
        return button == Button::home ? home_ : (enabled_ & mask(button)) != 0;
    }
    bool pressable(Button button) const { return offered(button) && enabled(button); }
    // What Enter presses, if anything.
    std::optional<Button> defaultButton() const;

    bool operator==(const ButtonState&) const = default;

private:
    static DWORD mask(Button button);

    DWORD offered_ = 0;
    DWORD enabled_ = ~DWORD{0};
    bool home_ = false;
};

}  // namespace host
