#include "tools/emergency_disk/disk_maker.h"

#include <algorithm>

#include "tools/common/names.h"

namespace tools::emergency_disk {

namespace {

// Three steps before the fourteen files and one for each; the sequence itself jumps to the end.
constexpr int steps = 3 + 14;

std::string trimmed(const char* text) {
    std::string line = utf8(text);
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    return line;
}

}  // namespace

void DiskMaker::UPDATE_WINDOW(const char* text, int) {
    lastStatus_ = trimmed(text);
    console_.status(lastStatus_);
}

void DiskMaker::MoveSlider(int absolute, int value) {
    if (absolute != 0) {
        position_ = value;
    } else {
        position_ = std::min(100, position_ + (value != 0 ? value : 100 / steps));
    }
    console_.progress(position_);
}

void DiskMaker::SHOW_ERROR(int errorNumber, int, const char* text) {
    shownError_ = trimmed(text);
    if (errorNumber != 0) shownError_ += " (" + std::to_string(errorNumber) + ")";
    console_.status(shownError_);
}

void DiskMaker::GET_MESSAGE_WND(HWND&) {}

}  // namespace tools::emergency_disk
