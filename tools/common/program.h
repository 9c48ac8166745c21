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

// For an option or argument that names a file or folder; `kind` stands for it in the help.
CLI::Option* named(CLI::Option* option, const char* kind);

// What a running command works with.
struct Session {
    Console& console;
    bool json;                             // one result object instead of text results
    JsonWriter& object;                    // that object, for the command's own members; names in English
    std::vector<std::string> warned = {};  // what its last member tells

    // Adds one of these members, where there is such an object.
    void member(const char* name, const JsonText& value) const {
        if (json) object.member(name, value);
    }
    // Takes what the user should know of though the command goes on (UTF-8, no full stop). Lives as long as
    // the session.
    std::function<void(const std::string&)> warnings();
};

// A command-line program of several commands: the options they share (-h, -V, -q, --json), the exit codes and
// the way failures are reported.
class Program {
public:
    using Body = std::function<void(Session&)>;

    Program(std::string name, std::string description, std::string examples);

    // Adds a command; the caller adds its options to the result. The body throws Problem to fail.
    CLI::App* command(const std::string& name, const std::string& description, const std::string& examples,
                      Body body);

    // Parses, runs the chosen command and gives the exit code. Nothing is thrown.
    // For the build alone, and so not in the help: "--write-reference FOLDER" writes the manual page and the
    // completions (reference.h).
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

// A program's main function around its real one: what that throws ends the program with one sentence and an
// exit code, also when there is no memory left to say it with.
int runToTheEnd(const char* name, int (*program)(int argc, char** argv), int argc, char** argv);

}  // namespace tools
