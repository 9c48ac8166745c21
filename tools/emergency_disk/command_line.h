#pragma once
#include "tools/emergency_disk/commands.h"

// Parts of the command line that depend on where the diskettes are. One source for each platform.

namespace tools::emergency_disk {

struct HelpTexts {
    const char* program;  // examples in the help
    const char* make;
    const char* check;
    const char* targetMissing;  // the error when no diskette is named
};
const HelpTexts& helpTexts();

// The option or options that name the diskette.
void addTarget(CLI::App& command, Target& target);
// Options for the layer's Windows and diskette.
void addLayerOptions(CLI::App& command, MakeOptions& options);
// The command that makes blank diskettes.
void addFormat(Program& program, FormatOptions& options);

}  // namespace tools::emergency_disk
