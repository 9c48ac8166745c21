#pragma once
#include <CLI/CLI.hpp>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/common/cancellation.h"
#include "tools/common/console.h"
#include "tools/common/exit_code.h"
#include "tools/common/json_writer.h"

namespace tools {

// Marks an option or argument that names a file or folder; `kind` represents it in the help.
CLI::Option* named(CLI::Option* option, const char* kind);

// The environment of a running command.
struct Session {
    Console& console;
    bool json;                             // one result object instead of text results
    JsonWriter& object;                    // the result object, for the command's members; names in English
    std::vector<std::string> warned = {};  // the warnings in its last member

    // Adds a member, if there is a result object.
    void member(const char* name, const JsonText& value) const {
        if (json) object.member(name, value);
    }
    // Takes warnings that do not stop the command (UTF-8, no full stop). Valid as long as the session.
    std::function<void(const std::string&)> warnings();
};

// A command-line program with several commands: their common options (-h, -V, -q, --json), the exit codes and
// the error reports.
class Program {
public:
    using Body = std::function<void(Session&)>;

    Program(std::string name, std::string description, std::string examples);

    // Adds a command; the caller adds its options to the result. The body throws Problem to fail.
    CLI::App* command(const std::string& name, const std::string& description, const std::string& examples,
                      Body body);

    // Parses, runs the chosen command and returns the exit code. Throws nothing. "--write-reference FOLDER",
    // for the build only and not in the help, writes the manual page and the completions (reference.h).
    int run(int argc, const char* const* argv);

private:
    int writeReferenceTo(const std::string& folder) const;
    ExitCode runCommand();
    ExitCode answer(const CLI::ParseError& fault, bool json);
    std::string usageText(const CLI::ParseError& fault) const;
    void finishObject(ExitCode code, const std::string& error, const std::vector<std::string>& warned = {});

    std::string name_;
    CLI::App app_;
    std::map<CLI::App*, Body> bodies_;
    std::map<const CLI::App*, std::string> examples_;
    bool quiet_ = false;
    bool json_ = false;
    std::string commandName_;
    JsonWriter object_;
};

// Runs a program's main function: whatever it throws ends the program with one sentence and an exit code,
// even when no memory is left for the sentence.
int runToTheEnd(const char* name, int (*program)(int argc, char** argv), int argc, char** argv);

}  // namespace tools
