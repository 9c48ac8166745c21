// A POSIX system whose Windows is played by the layer.
#include "tools/common/this_system.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "tools/common/exit_code.h"
#include "tools/common/names.h"
#include "winlayer/machine.h"

namespace tools {

std::vector<std::string> commandLine(int argc, const char* const* argv) {
    return {argv, argv + argc};
}

void fillStandardStreams() {
    for (const int stream : {0, 1, 2}) {
        if (fcntl(stream, F_GETFD) == -1) (void)!open("/dev/null", stream == 1 ? O_RDONLY : O_RDWR);
    }
}

void workAlone() {
    winlayer::Machine::current().drives.workAlone();
}

std::string windowsPath(const Path& host) {
    try {
        return winlayer::Machine::current().drives.fromHost(
            std::filesystem::absolute(host.string()).lexically_normal());
    } catch (const std::invalid_argument&) {
        throw Problem(ExitCode::usage, "'" + host.string() + "' has a character outside the ANSI code page");
    }
}

namespace terminal {

bool drawsLines() {
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && kind != nullptr && std::string_view(kind) != "dumb";
}

bool showsColours() {
    const char* refusal = std::getenv("NO_COLOR");
    return drawsLines() && (refusal == nullptr || *refusal == 0);
}

std::size_t width() {
    winsize size{};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return (known ? size.ws_col : 80U) - 1U;
}

void redraw(std::string_view line) {
    std::cerr << '\r' << line << "\033[K" << std::flush;
}

void clear() {
    redraw("");
}

bool canAsk() {
    return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

}  // namespace terminal

std::string encoded(Stream, std::string_view text) {
    return std::string(text);
}

}  // namespace tools
