#include "tools/emergency_disk/disk_maker.h"

#include <algorithm>
#include <string>

#include "tools/common/names.h"

namespace tools::emergency_disk {

namespace {

// Three steps, then one for each of the fourteen files; the sequence itself jumps to the end.
constexpr int steps = 3 + 14;

std::string trimmed(const char* text) {
    std::string line = utf8(text);
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    return line;
}

}  // namespace

void DiskMaker::UPDATE_WINDOW(const char* text, int) {
    ++statusLines_;
    console_.status(trimmed(text));
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
    failed_ = true;
    console_.status(trimmed(text) + (errorNumber != 0 ? " (" + std::to_string(errorNumber) + ")" : ""));
}

void DiskMaker::GET_MESSAGE_WND(HWND&) {}

}  // namespace tools::emergency_disk
