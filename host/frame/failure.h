#pragma once
#include <stdexcept>
#include <string>

namespace host {

// The program's exit codes; part of its interface.
enum class ExitCode : int {
    success = 0,
    failure = 1,
    usage = 2,
    scriptFailed = 3,
    notInstalled = 4,
    noDisplay = 5,
};

// A failure that ends the program; the text (UTF-8, no trailing full stop) says what happened to what.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code_(code) {}
    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

}  // namespace host
