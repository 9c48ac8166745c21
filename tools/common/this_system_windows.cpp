// Windows itself.
#include "tools/common/this_system.h"

#include <windows.h>

#include <algorithm>
#include <iostream>

#include "tools/common/exit_code.h"
#include "tools/common/names.h"

namespace tools {

namespace {

HANDLE standard(Stream stream) {
    return GetStdHandle(stream == Stream::out ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool isConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

std::size_t columns() {
    CONSOLE_SCREEN_BUFFER_INFO facts{};
    const bool known = GetConsoleScreenBufferInfo(standard(Stream::err), &facts) != 0 && facts.dwSize.X > 1;
    return known ? static_cast<std::size_t>(facts.dwSize.X) : 80;
}

// The number of characters of a UTF-8 text.
std::size_t length(std::string_view text) {
    std::size_t count = 0;
    for (const char byte : text) count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
    return count;
}

}  // namespace

std::vector<std::string> commandLine(int argc, const char* const* argv) {
    std::vector<std::string> words;
    for (int i = 0; i < argc; ++i) words.push_back(utf8(argv[i]));
    return words;
}

// A closed stream has a special handle here, which no file is given.
void fillStandardStreams() {}

// Windows' cache is shared by all programs.
void workAlone() {}

std::string windowsPath(const Path& host) {
    char path[MAX_PATH + 1];
    const DWORD size = GetFullPathNameA(ansi(host.string()).c_str(), sizeof path, path, nullptr);
    if (size == 0 || size >= sizeof path) {
        throw Problem(ExitCode::usage, "'" + host.string() + "' is no usable name, or too long");
    }
    std::string whole(path, size);
    const bool root = size == 3 && whole[1] == ':';
    if (!root && whole.back() == '\\') whole.pop_back();
    return whole;
}

void requireWindowsPath(const Path& host) {
    windowsPath(host);
}

std::string windowsSpelling(const Path& host) {
    std::string path = ansi(host.string());
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

namespace terminal {

bool drawsLines() {
    return isConsole(standard(Stream::err));
}

// Consoles of older Windows have no control sequences.
bool showsColours() {
    return false;
}

std::size_t width() {
    return columns() - 1;
}

void redraw(std::string_view line) {
    const std::size_t used = length(line);
    const std::string rest(width() > used ? width() - used : 0, ' ');
    std::cerr << '\r' << encoded(Stream::err, line) << rest << std::flush;
}

void clear() {
    redraw("");
    std::cerr << '\r' << std::flush;
}

bool canAsk() {
    return isConsole(GetStdHandle(STD_INPUT_HANDLE)) && drawsLines();
}

}  // namespace terminal

// A console has its own code page; files and pipes get the same bytes on every platform.
std::string encoded(Stream stream, std::string_view text) {
    if (!isConsole(standard(stream))) return std::string(text);
    return converted(text, CP_UTF8, GetConsoleOutputCP());
}

}  // namespace tools
