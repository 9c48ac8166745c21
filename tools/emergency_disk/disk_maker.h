#pragma once
#include "make_zar_disks.h"
#include "tools/common/console.h"

namespace tools::emergency_disk {

// The library's disk maker with a console as its user interface.
class DiskMaker : public MakeZARDisks {
public:
    explicit DiskMaker(Console& console) : console_(console) {}

    void UPDATE_WINDOW(const char* text, int pause) override;
    void MoveSlider(int absolute, int value) override;
    void SHOW_ERROR(int errorNumber, int kind, const char* text) override;
    void GET_MESSAGE_WND(HWND& window) override;
    int GetSliderPos() override { return position_; }

    // Whether the sequence has reported an error.
    bool hasFailed() const { return failed_; }
    // The number of status lines it has shown.
    int statusLines() const { return statusLines_; }

private:
    Console& console_;
    int position_ = 0;  // per cent
    int statusLines_ = 0;
    bool failed_ = false;
};

}  // namespace tools::emergency_disk
