#pragma once
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "host/frame/page_view.h"
#include "host/frame/wizard_frame.h"

namespace host {

// Records what a user would see of the frame, one line (UTF-8) for each change:
//
//     > next                                          what was done
//     page 2                                          a page, numbered in order of first appearance
//       1011 (x) Mendwell Ostrel &ausführen           its controls: (x), ( ) marks of radio buttons
//     buttons: back next cancel help home             those offered; "-back" when disabled
//     status: ...    progress: 0..100    progress: 3    progress: off
//     message [caption] text -> ok    help 802: ...    leave
class Transcript : public FrameEvents {
public:
    explicit Transcript(std::ostream& out) : out_(out) {}
    // The frame whose buttons are recorded; must outlive the transcript's use.
    void watch(const WizardFrame& frame) { frame_ = &frame; }

    void line(const std::string& utf8);
    // Writes the changes of the page and the buttons since the last call.
    void flush();

    void pageShown(HWND page, WPARAM argument) override;
    void buttonsChanged() override {}  // written by the next flush, when the page is stable
    void progressRange(int low, int high) override;
    void progress(int position) override;
    void status(const std::string& text) override;
    void leaving() override;

private:
    void flushPage();
    void flushButtons();

    std::ostream& out_;
    const WizardFrame* frame_ = nullptr;
    std::map<HWND, int> pageNumbers_;
    bool pagePending_ = false;
    std::vector<ControlView> shown_;
    std::string buttons_;
};

}  // namespace host
