#pragma once
#include <ostream>

#include "host/frame/options.h"

namespace host {

// Carries out the options; the transcript goes to `out`. `suite` is the folder of the suite's modules, a
// Windows path (8-bit) with a trailing backslash. Throws Failure.
void run(const Options& options, Platform& platform, const std::string& suite, std::ostream& out);

}  // namespace host
