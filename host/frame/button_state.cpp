#include "host/frame/button_state.h"

#include <initializer_list>

namespace host {

DWORD ButtonState::mask(Button button) {
    for (const WizardButton& row : wizardButtons) {
        if (row.button == button) return row.mask;
    }
    return 0;
}

std::optional<Button> ButtonState::defaultButton() const {
    for (const Button button : {Button::next, Button::finish, Button::cancel}) {
        if (pressable(button)) return button;
    }
    return std::nullopt;
}

}  // namespace host
