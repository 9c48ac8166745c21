#pragma once
#include <filesystem>
#include <string>
#include <vector>

// One run of a command-line program of ours with its output taken apart.
struct ProgramRun {
    int exitCode = -1;  // -1: ended by a signal
    std::string out;
    std::string err;
};

// Runs tools/NAME of this build with standard input closed. `folder`: its working directory.
ProgramRun runProgram(const std::string& name, const std::vector<std::string>& arguments,
                      const std::filesystem::path& folder = ".");

// The same, sending the signal as soon as a line of standard error contains `cue`.
ProgramRun runAndSignal(const std::string& name, const std::vector<std::string>& arguments,
                        const std::filesystem::path& folder, const std::string& cue, int signal);
