#include "host/frame/answers.h"

#include <algorithm>
#include <vector>

#include "host/frame/platform.h"
#include "host/frame/script.h"
#include "host/frame/text.h"

namespace host {

namespace {

std::vector<int> buttonsOf(UINT style) {
    switch (style & MB_TYPEMASK) {
        case MB_OKCANCEL:
            return {IDOK, IDCANCEL};
        case MB_ABORTRETRYIGNORE:
            return {IDABORT, IDRETRY, IDIGNORE};
        case MB_YESNOCANCEL:
            return {IDYES, IDNO, IDCANCEL};
        case MB_YESNO:
            return {IDYES, IDNO};
        case MB_RETRYCANCEL:
            return {IDRETRY, IDCANCEL};
        default:
            return {IDOK};
    }
}

bool has(const std::vector<int>& buttons, int button) {
    return std::find(buttons.begin(), buttons.end(), button) != buttons.end();
}

}  // namespace

QXHandlers Answers::handlers() {
    return {this, onMessageBox, onHelp};
}

int WINAPI Answers::onMessageBox(void* self, HWND, const char* text, const char* caption, UINT style) {
    return static_cast<Answers*>(self)->messageBox(text, caption, style);
}

void WINAPI Answers::onHelp(void* self, HWND, DWORD topic, const char* text) {
    static_cast<Answers*>(self)->help(topic, text);
}

int Answers::messageBox(const char* text, const char* caption, UINT style) {
    transcript_.flush();
    const int button = choose(style);
    transcript_.line("message [" + oneLine(caption) + "] " + oneLine(text) + " -> " + answerName(button));
    return button;
}

// The last button is the one with no consequences.
int Answers::choose(UINT style) {
    const std::vector<int> buttons = buttonsOf(style);
    if (buttons.size() == 1) return buttons.front();
    if (queued_.empty()) return buttons.back();
    const Queued answer = std::move(queued_.front());
    queued_.pop_front();
    if (!answer.medium.empty()) platform_.setMedium(answer.medium);
    return has(buttons, answer.button) ? answer.button : buttons.back();
}

void Answers::help(DWORD topic, const char* text) {
    transcript_.flush();
    transcript_.line("help " + std::to_string(topic) + ": " + oneLine(text));
}

}  // namespace host
