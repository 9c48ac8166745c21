#include "winlayer/dialogs/control_progress.h"

#include <algorithm>
#include <utility>

#include "winlayer/include/commctrl.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {

void ProgressControl::changed() {
    windows().peer().stateChanged(window_.handle);
}

LRESULT ProgressControl::setRange(int low, int high) {
    const LRESULT old = MAKELONG(static_cast<WORD>(low_), static_cast<WORD>(high_));
    low_ = low;
    high_ = high;
    position_ = std::clamp(position_, std::min(low_, high_), std::max(low_, high_));
    changed();
    return old;
}

LRESULT ProgressControl::setPosition(std::int64_t position) {
    const std::int64_t lowest = std::min(low_, high_);
    const std::int64_t highest = std::max(low_, high_);
    const int old = std::exchange(position_, static_cast<int>(std::clamp(position, lowest, highest)));
    changed();
    return old;
}

LRESULT ProgressControl::message(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case PBM_SETRANGE: {
            const auto range = static_cast<DWORD_PTR>(lParam);
            return setRange(LOWORD(range), HIWORD(range));
        }
        case PBM_SETRANGE32:
            return setRange(static_cast<int>(wParam), static_cast<int>(lParam));
        case PBM_GETRANGE:
            if (auto* range = reinterpret_cast<PBRANGE*>(lParam)) {
                *range = {low_, high_};
            }
            return wParam != 0 ? low_ : high_;
        case PBM_SETPOS:
            return setPosition(static_cast<int>(wParam));
        case PBM_DELTAPOS:
            return setPosition(std::int64_t{position_} + static_cast<int>(wParam));
        case PBM_SETSTEP:
            return std::exchange(step_, static_cast<int>(wParam));
        case PBM_STEPIT: {
            const std::int64_t next = std::int64_t{position_} + step_;
            return setPosition(next > high_ ? low_ : next);  // wraps around at the end
        }
        case PBM_GETPOS:
            return position_;
        default:
            return defaultControlMessage(window_, message, wParam, lParam);
    }
}

}  // namespace winlayer
