#pragma once
#include <string>

#include "make_zar_disks.h"
#include "tools/common/console.h"

namespace tools::emergency_disk {

// The library's disk maker with a console for a user interface.
class DiskMaker : public MakeZARDisks {
public:
    explicit DiskMaker(Console& console) : console_(console) {}

    void UPDATE_WINDOW(const char* text, int pause) override;
    void MoveSlider(int absolute, int value) override;
    void SHOW_ERROR(int errorNumber, int kind, const char* text) override;
    void GET_MESSAGE_WND(HWND& window) override;
    int GetSliderPos() override { return position_; }

    // The last error text that the sequence showed (UTF-8); empty when it showed none.
    const std::string& shownError() const { return shownError_; }
    // The last status line (UTF-8).
    const std::string& lastStatus() const { return lastStatus_; }

private:
    Console& console_;
    int position_ = 0;  // per cent
    std::string shownError_;
    std::string lastStatus_;
};

}  // namespace tools::emergency_disk
