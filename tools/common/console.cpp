#include "tools/common/console.h"

#include <algorithm>
#include <iostream>

#include "tools/common/control_characters.h"
#include "tools/common/this_system.h"

namespace tools {

namespace {

constexpr int barWidth = 20;

// The first `columns` characters of a UTF-8 text, never splitting one.
std::string_view fit(std::string_view text, std::size_t columns) {
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        const bool starts = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
        if (starts && columns-- == 0) break;
    }
    return text.substr(0, end);
}

std::string shown(Stream stream, std::string_view text) {
    return encoded(stream, withVisibleControls(text));
}

}  // namespace

Console::Console(std::string program, bool quiet)
    : program_(std::move(program)),
      quiet_(quiet),
      terminal_(terminal::drawsLines()),
      colour_(terminal::showsColours()) {}

Console::~Console() {
    endProgress();
}

void Console::status(std::string_view text) {
    status_ = withVisibleControls(text);
    if (quiet_) return;
    if (terminal_) {
        draw();
    } else {
        std::cerr << encoded(Stream::err, status_) << '\n' << std::flush;
    }
}

void Console::progress(int percent) {
    percent_ = std::clamp(percent, 0, 100);
    if (!quiet_ && terminal_) draw();
}

void Console::draw() {
    const int filled = percent_ * barWidth / 100;
    std::string line = "[" + std::string(static_cast<std::size_t>(filled), '#') +
                       std::string(static_cast<std::size_t>(barWidth - filled), '.') + "] ";
    const std::string number = std::to_string(percent_);
    line += std::string(3 - number.size(), ' ') + number + " %  ";
    const std::size_t width = terminal::width();
    if (width > line.size()) line += fit(status_, width - line.size());
    terminal::redraw(line);
    drawn_ = true;
}

void Console::endProgress() {
    if (drawn_) terminal::clear();
    drawn_ = false;
}

void Console::error(std::string_view text, std::string_view hint) {
    report("error:", "\033[1;31m", text);
    if (!hint.empty()) std::cerr << shown(Stream::err, hint) << '\n' << std::flush;
}

void Console::warning(std::string_view text) {
    report("warning:", "\033[1;33m", text);
}

void Console::report(std::string_view kind, std::string_view colour, std::string_view text) {
    endProgress();
    const std::string_view on = colour_ ? colour : "";
    const std::string_view off = colour_ ? "\033[0m" : "";
    std::cerr << program_ << ": " << on << kind << off << ' ' << shown(Stream::err, text) << '\n'
              << std::flush;
}

void Console::result(std::string_view text) {
    endProgress();
    std::cout << shown(Stream::out, text) << '\n';
}

bool Console::confirm(std::string_view question) {
    if (!terminal::canAsk()) return false;
    endProgress();
    std::cerr << shown(Stream::err, question) << " [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes" || answer == "YES";
}

}  // namespace tools
