#pragma once
#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

namespace tools {

// The contents of a program's manual page and shell completions, taken from the option table behind the help.
// Texts are UTF-8.

enum class ValueKind { none, text, choice, file, folder };

struct OptionEntry {
    std::vector<std::string> names;  // "-l", "--list"; for a positional its name
    std::string heading;             // with value and conditions, as in the help
    std::string usage;               // a positional in a usage line: "ARCHIVE", "[DIRECTORY]"
    std::string description;
    ValueKind kind = ValueKind::none;
    std::string valueName;             // "FILE"; empty without a value
    std::vector<std::string> choices;  // of ValueKind::choice
};

struct CommandEntry {
    std::string name;  // empty for the program itself
    std::string description;
    std::string examples;
    std::vector<OptionEntry> positionals;
    std::vector<OptionEntry> options;
};

struct Reference {
    std::string program;
    std::string version;                  // "zar 1.0.0"
    CommandEntry common;                  // the program's description and its options before a command
    std::vector<OptionEntry> everywhere;  // its options that every command accepts, too
    std::vector<CommandEntry> commands;
};

// examples: those of the program and of each of its commands.
Reference makeReference(const CLI::App& program, const std::map<const CLI::App*, std::string>& examples);

std::string manualPage(const Reference& reference);
std::string bashCompletion(const Reference& reference);
std::string zshCompletion(const Reference& reference);
std::string fishCompletion(const Reference& reference);

// Writes all four into a folder, with the names that man and the shells expect: zar.1, zar.bash, _zar,
// zar.fish. Throws std::ios_base::failure.
void writeReference(const Reference& reference, const std::string& folder);

}  // namespace tools
