#include "tools/common/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace tools {

namespace {

constexpr int barWidth = 20;

// Whether standard error is a terminal that can draw a line anew.
bool drawsLines() {
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

bool coloursWanted() {
    const char* refusal = std::getenv("NO_COLOR");
    return refusal == nullptr || *refusal == 0;
}

std::size_t terminalWidth() {
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
    return size.ws_col;
}

// The first `columns` characters of a UTF-8 text, never cutting one in half.
std::string_view fit(std::string_view text, std::size_t columns) {
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        const bool starts = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
        if (starts && columns-- == 0) break;
    }
    return text.substr(0, end);
}

}  // namespace

Console::Console(std::string program, bool quiet)
    : program_(std::move(program)),
      quiet_(quiet),
      terminal_(drawsLines()),
      colour_(terminal_ && coloursWanted()) {}

Console::~Console() {
    endProgress();
}

void Console::status(std::string_view text) {
    status_ = text;
    if (quiet_) return;
    if (terminal_) {
        draw();
    } else {
        std::cerr << text << '\n' << std::flush;
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
    const std::size_t width = terminalWidth();
    if (width > line.size() + 1) line += fit(status_, width - line.size() - 1);
    std::cerr << '\r' << line << "\033[K" << std::flush;
    drawn_ = true;
}

void Console::endProgress() {
    if (drawn_) std::cerr << "\r\033[K" << std::flush;
    drawn_ = false;
}

void Console::error(std::string_view text) {
    endProgress();
    const std::string_view on = colour_ ? "\033[1;31m" : "";
    const std::string_view off = colour_ ? "\033[0m" : "";
    std::cerr << program_ << ": " << on << "error:" << off << ' ' << text << '\n' << std::flush;
}

void Console::result(std::string_view text) {
    endProgress();
    std::cout << text << '\n';
}

bool Console::canAsk() {
    return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

bool Console::confirm(std::string_view question) {
    if (!canAsk()) return false;
    endProgress();
    std::cerr << question << " [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes" || answer == "YES";
}

}  // namespace tools
