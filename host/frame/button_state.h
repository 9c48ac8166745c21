#pragma once
#include <optional>

#include "host/protocol.h"

namespace host {

// Which of the frame's buttons a page offers and which are enabled. The two masks are independent: a disabled
// button that is offered again stays disabled until it is enabled. Initially none is offered and all are
// enabled.
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
    // The button that Enter presses, if any.
    std::optional<Button> defaultButton() const;

    bool operator==(const ButtonState&) const = default;

private:
    static DWORD mask(Button button);

    DWORD offered_ = 0;
    DWORD enabled_ = ~DWORD{0};
    bool home_ = false;
};

}  // namespace host
