#include "host/frame/script.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "host/frame/failure.h"

namespace host {

namespace {

using Words = std::vector<std::string>;
using Action = decltype(Step::action);

struct AnswerRow {
    int button;
    const char* name;
};
constexpr AnswerRow answers[] = {{IDOK, "ok"},       {IDCANCEL, "cancel"}, {IDABORT, "abort"},
                                 {IDRETRY, "retry"}, {IDIGNORE, "ignore"}, {IDYES, "yes"},
                                 {IDNO, "no"}};

struct KeyRow {
    const char* name;
    WPARAM key;
};
constexpr KeyRow keys[] = {{"Tab", VK_TAB}, {"Enter", VK_RETURN}, {"Escape", VK_ESCAPE}, {"Space", VK_SPACE},
                           {"Up", VK_UP},   {"Down", VK_DOWN},    {"Left", VK_LEFT},     {"Right", VK_RIGHT}};

constexpr std::string_view blanks = " \t\r\n";

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

Words wordsOf(const std::string& text) {
    std::istringstream stream(text);
    Words words;
    for (std::string word; stream >> word;) words.push_back(std::move(word));
    return words;
}

std::optional<int> number(const std::string& text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < 0) return std::nullopt;
    return value;
}

std::optional<Action> press(const Words& words) {
    if (words.size() != 1) return std::nullopt;
    if (words[0] == "home") return step::Press{Button::home};
    for (const WizardButton& row : wizardButtons) {
        if (words[0] == row.name) return step::Press{row.button};
    }
    return std::nullopt;
}

std::optional<Action> key(const std::string& name) {
    for (const KeyRow& row : keys) {
        if (name == row.name) return step::Key{WM_KEYDOWN, row.key, true};
    }
    constexpr std::string_view alt = "Alt+";
    if (name.size() == alt.size() + 1 && name.starts_with(alt)) {
        return step::Key{WM_SYSCHAR, static_cast<unsigned char>(name.back()), false};
    }
    return std::nullopt;
}

std::optional<Action> action(const Words& words) {
    const std::string& verb = words[0];
    const std::size_t arguments = words.size() - 1;
    if (verb == "wait" && arguments == 0) return step::Wait{};
    if (verb == "key" && arguments == 1) return key(words[1]);
    if (verb == "medium" && arguments == 1) return step::Medium{words[1]};
    if (verb == "select" && arguments == 1) {
        if (const auto id = number(words[1])) return step::Select{*id};
    }
    if (verb == "answer" && (arguments == 1 || arguments == 2)) {
        if (const auto button = answerButton(words[1]))
            return step::Answer{*button, arguments == 2 ? words[2] : std::string()};
    }
    if (verb == "resize" && arguments == 2) {
        const auto width = number(words[1]);
        const auto height = number(words[2]);
        if (width && height) return step::Resize{*width, *height};
    }
    return press(words);
}

}  // namespace

std::vector<Step> parseScript(const std::string& script) {
    std::vector<Step> steps;
    std::istringstream stream(script);
    for (std::string part; std::getline(stream, part, ';');) {
        const std::string text = trimmed(part);
        if (text.empty()) continue;
        auto understood = action(wordsOf(text));
        if (!understood) throw Failure(ExitCode::usage, "the script's step '" + text + "' is not understood");
        steps.push_back({text, std::move(*understood)});
    }
    return steps;
}

const char* answerName(int button) {
    const auto row = std::ranges::find(answers, button, &AnswerRow::button);
    return row == std::end(answers) ? nullptr : row->name;
}

std::optional<int> answerButton(const std::string& name) {
    const auto row =
        std::ranges::find_if(answers, [&name](const AnswerRow& each) { return name == each.name; });
    return row == std::end(answers) ? std::nullopt : std::optional(row->button);
}

const char* scriptHelp() {
    return "  next, back, finish, cancel, help, home   presses the frame's button\n"
           "  select ID                  clicks the control ID of the page\n"
           "  answer BUTTON [STATE]      answers a message box to come (ok, cancel, retry, yes, no,\n"
           "                             ...), after putting the diskette into STATE\n"
           "  key NAME                   Tab, Enter, Escape, Space, Up, Down, Left, Right, Alt+LETTER\n"
           "  wait                       handles every message that waits\n"
           "  resize W H                 gives the frame a size in pixels\n"
           "  medium STATE               puts the diskette into a state; normal ends it\n";
}

}  // namespace host
