#include "host/frame/script_driver.h"

#include "host/frame/failure.h"

namespace host {

namespace {

[[noreturn]] void fail(const std::string& text) {
    throw Failure(ExitCode::scriptFailed, text);
}

std::string firstWord(const std::string& text) {
    return text.substr(0, text.find(' '));
}

}  // namespace

ScriptDriver::ScriptDriver(WizardFrame& frame, Platform& platform, Transcript& transcript, Answers& answers,
                           std::string screenshots)
    : frame_(frame),
      platform_(platform),
      transcript_(transcript),
      answers_(answers),
      screenshots_(std::move(screenshots)) {}

void ScriptDriver::run(const std::vector<Step>& steps) {
    settle("start");
    for (const Step& step : steps) {
        transcript_.line("> " + step.text);
        if (frame_.left()) fail("'" + step.text + "': the component has been left");
        try {
            std::visit([this](const auto& action) { perform(action); }, step.action);
        } catch (const Failure& failure) {
            throw Failure(failure.code(), "'" + step.text + "': " + failure.what());
        }
        settle(firstWord(step.text));
    }
}

void ScriptDriver::settle(const std::string& name) {
    frame_.dispatchWaiting();
    transcript_.flush();
    if (screenshots_.empty()) return;
    std::string number = std::to_string(taken_++);
    number.insert(0, number.size() < 2 ? 2 - number.size() : 0, '0');
    platform_.screenshot(frame_.window(), screenshots_ + "/" + number + "-" + name + ".png");
}

void ScriptDriver::perform(const step::Press& press) {
    if (!frame_.press(press.button)) {
        fail(frame_.buttons().offered(press.button) ? "the button is disabled" : "the button is not offered");
    }
}

void ScriptDriver::perform(const step::Select& select) {
    const HWND control = frame_.page() ? GetDlgItem(frame_.page(), select.id) : nullptr;
    if (!control || !IsWindowVisible(control)) fail("the page has no such control");
    if (!IsWindowEnabled(control)) fail("the control is disabled");
    SendMessageA(control, BM_CLICK, 0, 0);
}

void ScriptDriver::perform(const step::Answer& answer) {
    answers_.queue(answer.button, answer.medium);
}

void ScriptDriver::perform(const step::Key& key) {
    const HWND focus = GetFocus();
    if (!focus) fail("nothing has the keyboard");
    constexpr LPARAM once = 1;
    constexpr LPARAM altIsDown = LPARAM{1} << 29;
    constexpr LPARAM wasDown = static_cast<LPARAM>(0xC0000000u);
    PostMessageA(focus, key.message, key.key, key.released ? once : once | altIsDown);
    if (key.released) PostMessageA(focus, WM_KEYUP, key.key, once | wasDown);
}

void ScriptDriver::perform(const step::Resize& resize) {
    SetWindowPos(frame_.window(), nullptr, 0, 0, resize.width, resize.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT client{};
    if (!frame_.page()) return;
    GetClientRect(frame_.page(), &client);
    transcript_.line("size: page " + std::to_string(client.right) + "x" + std::to_string(client.bottom));
}

void ScriptDriver::perform(const step::Medium& medium) {
    platform_.setMedium(medium.state);
}

}  // namespace host
