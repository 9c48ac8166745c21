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

// Runs a shell command that finds the programs of this build by their names.
ProgramRun runShell(const std::string& command, const std::filesystem::path& folder);

// Runs a shell command on a machine where the folder's subfolder "full" is a disk of 64 KB; false where such
// a disk cannot be had.
bool runWithSmallDisk(const std::string& command, const std::filesystem::path& folder, ProgramRun& run);

// The same as runProgram, sending the signal as soon as a line of standard error contains `cue`.
ProgramRun runAndSignal(const std::string& name, const std::vector<std::string>& arguments,
                        const std::filesystem::path& folder, const std::string& cue, int signal);
