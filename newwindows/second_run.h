#pragma once
#include <optional>

namespace newwindows {

// Where the libraries do not know the Windows, runs this program a second time with the same command line,
// console, standard streams and environment, but with Windows' compatibility setting for XP, and waits for
// its end. First in main(), before anything is read or written. Result: the exit code of the second run, with
// which this one ends. Nothing where the program goes on itself: on a known Windows, in the second run (there
// is never a third), or where none could be started.
std::optional<int> runAgainAsXp();

}  // namespace newwindows
