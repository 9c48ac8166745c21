#pragma once
#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

namespace tools {

// What a program's manual page and its completions in the shells tell, taken from the table of options that
// the help is made from. Texts are UTF-8.

enum class ValueKind { none, text, choice, file, folder };

struct OptionEntry {
    std::vector<std::string> names;  // "-l", "--list"; of a positional its name alone
    std::string heading;             // with value and conditions, as the help shows it
    std::string usage;               // a positional's in a line of usage: "ARCHIVE", "[DIRECTORY]"
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
    CommandEntry common;                  // what the program says and takes before a command
    std::vector<OptionEntry> everywhere;  // those of its options that every command takes, too
    std::vector<CommandEntry> commands;
};

// examples: those of the program and of each of its commands.
Reference makeReference(const CLI::App& program, const std::map<const CLI::App*, std::string>& examples);

std::string manualPage(const Reference& reference);
std::string bashCompletion(const Reference& reference);
std::string zshCompletion(const Reference& reference);
std::string fishCompletion(const Reference& reference);

// Writes all four into a folder, under the names by which man and the shells find them: zar.1, zar.bash,
// _zar, zar.fish. Throws std::ios_base::failure.
void writeReference(const Reference& reference, const std::string& folder);

}  // namespace tools
