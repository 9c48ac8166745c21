#pragma once
#include <string>
#include <vector>

#include "host/frame/answers.h"
#include "host/frame/platform.h"
#include "host/frame/script.h"
#include "host/frame/wizard_frame.h"

namespace host {

// Runs a script on a frame as a user would, and records what happens.
class ScriptDriver {
public:
    // `screenshots`: the folder for a PNG of the frame after each step; empty for none.
    ScriptDriver(WizardFrame& frame, Platform& platform, Transcript& transcript, Answers& answers,
                 std::string screenshots = {});
    // Throws Failure (scriptFailed) at the first step that a user could not perform.
    void run(const std::vector<Step>& steps);

private:
    void settle(const std::string& name);
    void perform(const step::Press& press);
    void perform(const step::Select& select);
    void perform(const step::Answer& answer);
    void perform(const step::Key& key);
    void perform(const step::Wait&) {}  // every step ends by handling waiting messages
    void perform(const step::Resize& resize);
    void perform(const step::Medium& medium);

    WizardFrame& frame_;
    Platform& platform_;
    Transcript& transcript_;
    Answers& answers_;
    std::string screenshots_;
    int taken_ = 0;
};

}  // namespace host
