#pragma once
#include "tools/emergency_disk/commands.h"

// What the command line offers depends on where the diskettes are. One source for each platform.

namespace tools::emergency_disk {

struct HelpTexts {
    const char* program;  // examples, as the help shows them
    const char* make;
    const char* check;
    const char* targetMissing;  // what to say when no diskette is named
};
const HelpTexts& helpTexts();

// The option or options that name the diskette.
void addTarget(CLI::App& command, Target& target);
// How the layer plays Windows and its diskette.
void addLayerOptions(CLI::App& command, MakeOptions& options);
// The command that makes blank diskettes.
void addFormat(Program& program, FormatOptions& options);

}  // namespace tools::emergency_disk
