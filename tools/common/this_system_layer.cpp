// A POSIX system under the Windows layer.
#include "tools/common/this_system.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "tools/common/exit_code.h"
#include "tools/common/names.h"
#include "winlayer/machine.h"

namespace tools {

namespace fs = std::filesystem;

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

namespace {

fs::path physicalPath(const Path& host) {
    std::error_code error;
    fs::path physical = fs::canonical(host.string(), error);
    if (error) throw Problem(ExitCode::failure, "cannot find " + host.string() + ": " + error.message());
    return physical;
}

// Whether the libraries find that file of the host, and no other, by a Windows path.
bool leadsTo(const std::string& path, const fs::path& physical) {
    std::error_code ignored;
    try {
        return fs::equivalent(winlayer::Machine::current().drives.toHost(path), physical, ignored);
    } catch (const std::invalid_argument&) {
        return false;
    }
}

// Empty when there is none.
std::string pathTo(const fs::path& physical) {
    try {
        std::string path = winlayer::Machine::current().drives.fromHost(physical);
        return leadsTo(path, physical) ? path : std::string();
    } catch (const std::invalid_argument&) {
        return {};
    }
}

// Names the first folder on the path that no Windows path can reach.
Problem unreachable(const fs::path& physical) {
    fs::path obstacle;
    for (const fs::path& name : physical) {
        obstacle /= name;
        if (pathTo(obstacle).empty()) break;
    }
    return {ExitCode::usage,
            "no Windows path leads to '" + obstacle.string() +
                "' (its name is a device's, ends in a dot or a blank, or has a character that "
                "Windows names or the ANSI code page lack)"};
}

}  // namespace

std::string windowsPath(const Path& host) {
    const fs::path physical = physicalPath(host);
    std::string path = pathTo(physical);
    if (path.empty()) throw unreachable(physical);
    return path;
}

void requireWindowsPath(const Path& host) {
    const fs::path place =
        physicalPath(host.parent().empty() ? "." : host.parent()) / host.filename().string();
    try {
        const winlayer::Drives& drives = winlayer::Machine::current().drives;
        (void)drives.toHost(drives.fromHost(place));  // a device's name has none
    } catch (const std::invalid_argument&) {
        throw unreachable(place);
    }
}

std::string windowsSpelling(const Path& host) {
    std::string path = ansi(host.string());
    std::replace(path.begin(), path.end(), '/', '\\');
    const fs::path physical = physicalPath(host);
    if (pathTo(physical).empty()) throw unreachable(physical);
    if (leadsTo(path, physical)) return path;
    throw Problem(ExitCode::usage, "Windows takes '" + host.string() + "' for another file than " +
                                       physical.string() + "; name it without links");
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
