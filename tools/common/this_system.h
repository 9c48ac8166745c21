#pragma once
#include <string>
#include <string_view>
#include <vector>

// Services of the system that the programs need beyond Windows' calls and files. One source for each
// platform.

namespace tools {

// The command-line arguments, UTF-8; the first is the program's name.
std::vector<std::string> commandLine(int argc, const char* const* argv);

// The descriptor of a closed standard stream would be reused by the next opened file, which would receive its
// texts. Whatever replaces standard output is not writable, so that the loss is noticed.
void fillStandardStreams();

// Selects exclusive mode: no other program uses this program's files meanwhile.
void workAlone();

// Standard error as a terminal.
namespace terminal {

// Whether it can redraw a line.
bool drawsLines();
bool showsColours();
// Columns that can be written without starting the next line.
std::size_t width();
// Writes a line (UTF-8, not longer than width()) over the previous one, or removes it.
void redraw(std::string_view line);
void clear();
// Whether a user can be asked.
bool canAsk();

}  // namespace terminal

// A text (UTF-8) in the encoding of standard output or standard error.
enum class Stream { out, err };
std::string encoded(Stream stream, std::string_view text);

}  // namespace tools
