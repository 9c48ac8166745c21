#pragma once
#include <span>
#include <stdexcept>
#include <string>

namespace tools {

// The exit codes of both programs; part of their interface.
enum class ExitCode : int {
    success = 0,
    failure = 1,
    usage = 2,
    verificationFailed = 3,
    noDiskette = 4,
    writeProtected = 5,
    refused = 6,
    mediumError = 7,
    invalidArchive = 8,
    doesNotFit = 9,
    unsuitableDrive = 10,
    cancelled = 130,
};

struct ExitCodeRow {
    ExitCode code;
    const char* name;     // in the JSON result
    const char* meaning;  // in the help
};

// Every exit code, ascending.
std::span<const ExitCodeRow> exitCodes();
const ExitCodeRow& describe(ExitCode code);
// The table at the end of a help text.
std::string exitCodeHelp();

// The message of both when memory runs out; it needs none itself.
inline constexpr char noMemoryText[] = "there is not enough memory";

// A failure that ends the program; the text says what happened to what (UTF-8, no trailing full stop).
class Problem : public std::runtime_error {
public:
    Problem(ExitCode code, const std::string& text) : std::runtime_error(text), code_(code) {}
    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

}  // namespace tools
