#include "host/frame/transcript.h"

#include <algorithm>

#include "host/frame/text.h"

namespace host {

namespace {

std::string describe(const ControlView& control) {
    static constexpr const char* marks[] = {"", "( ) ", "(x) "};
    return "  " + std::to_string(control.id) + " " + marks[static_cast<int>(control.mark)] +
           (control.enabled ? "" : "-") + oneLine(control.text);
}

std::string describe(const ButtonState& buttons) {
    std::string text;
    for (const WizardButton& row : wizardButtons) {
        if (!buttons.offered(row.button)) continue;
        text += std::string(" ") + (buttons.enabled(row.button) ? "" : "-") + row.name;
    }
    return text + (buttons.enabled(Button::home) ? " home" : " -home");
}

}  // namespace

void Transcript::line(const std::string& utf8) {
    out_ << utf8 << std::endl;
}

void Transcript::flush() {
    if (!frame_) return;
    flushPage();
    flushButtons();
}

void Transcript::flushPage() {
    const HWND page = frame_->page();
    if (!page) return;
    if (pagePending_) {
        const int next = static_cast<int>(pageNumbers_.size()) + 1;
        line("page " + std::to_string(pageNumbers_.try_emplace(page, next).first->second));
        shown_.clear();
        pagePending_ = false;
    }
    std::vector<ControlView> controls = viewPage(page);
    for (const ControlView& control : controls) {
        if (std::find(shown_.begin(), shown_.end(), control) == shown_.end()) line(describe(control));
    }
    shown_ = std::move(controls);
}

void Transcript::flushButtons() {
    std::string buttons = describe(frame_->buttons());
    if (buttons == buttons_) return;
    line("buttons:" + buttons);
    buttons_ = std::move(buttons);
}

void Transcript::pageShown(HWND, WPARAM) {
    pagePending_ = true;
}

void Transcript::progressRange(int low, int high) {
    flush();
    const bool off = low == 0 && high == 0;
    line(off ? "progress: off" : "progress: " + std::to_string(low) + ".." + std::to_string(high));
}

void Transcript::progress(int position) {
    flush();
    line("progress: " + std::to_string(position));
}

void Transcript::status(const std::string& text) {
    flush();
    line(text.empty() ? "status:" : "status: " + oneLine(text));
}

void Transcript::leaving() {
    flush();
    line("leave");
}

}  // namespace host
