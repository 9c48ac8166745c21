#pragma once
#include <string>
#include <string_view>
#include <vector>

// What the programs ask of the system they run on beyond Windows' calls and files. One source for each
// platform implements it.

namespace tools {

// The words of the command line, UTF-8; the first is the program's own name.
std::vector<std::string> commandLine(int argc, const char* const* argv);

// A standard stream that is closed would lend its place to the next file that is opened, and texts would go
// there. Nothing can be written to what takes the place of standard output, so that the loss is noticed.
void fillStandardStreams();

// Says that no other program uses this program's files meanwhile.
void workAlone();

// Standard error as a person sees it.
namespace terminal {

// Whether it can draw a line anew.
bool drawsLines();
bool showsColours();
// Columns of a line that can be written without starting the next.
std::size_t width();
// Writes a line (UTF-8, not longer than width()) over the one before, or removes it.
void redraw(std::string_view line);
void clear();
// Whether there is someone to ask.
bool canAsk();

}  // namespace terminal

// A text (UTF-8) in the form in which standard output or standard error takes it.
enum class Stream { out, err };
std::string encoded(Stream stream, std::string_view text);

}  // namespace tools
