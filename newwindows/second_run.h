#pragma once
#include <optional>

namespace newwindows {

// On a Windows version unknown to the libraries, runs this program a second time with the same command line,
// console, standard streams and environment, but in Windows' compatibility mode for XP, and waits for it to
// end. Call first in main(), before anything is read or written. Result: the exit code of the second run,
// which this one must return. Empty when this run continues: on a known version, in the second run (there is
// never a third), or when none could be started.
std::optional<int> runAgainAsXp();

}  // namespace newwindows
