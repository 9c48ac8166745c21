#pragma once
#include "winlayer/windows/control.h"

namespace winlayer {

// msctls_progress32: shows a position within a range.
class ProgressControl : public Control {
public:
    using Control::Control;
    LRESULT message(UINT message, WPARAM wParam, LPARAM lParam) override;

    int low() const { return low_; }
    int high() const { return high_; }
    int position() const { return position_; }

private:
    LRESULT setRange(int low, int high);
    LRESULT setPosition(std::int64_t position);
    void changed();

    int low_ = 0;
    int high_ = 100;
    int position_ = 0;
    int step_ = 10;
};

}  // namespace winlayer
