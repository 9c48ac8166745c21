#include "tools/common/reference.h"

#include <fstream>

namespace tools {

namespace {

// "TEXT:{95,98}": a set of choices after the value's name.
void readValue(const CLI::Option& option, OptionEntry& entry) {
    if (option.get_items_expected_max() == 0) return;
    const std::string type = option.get_type_name();
    const std::size_t open = type.find(":{");
    entry.valueName = type.empty() ? option.get_name(true) : type.substr(0, open);
    if (open != std::string::npos) {
        entry.kind = ValueKind::choice;
        entry.choices = CLI::detail::split(type.substr(open + 2, type.size() - open - 3), ',');
    } else if (entry.valueName == "TEXT") {
        entry.kind = ValueKind::text;
    } else {
        entry.kind = entry.valueName.starts_with("DIR") ? ValueKind::folder : ValueKind::file;
    }
}

OptionEntry describeOption(const CLI::Option& option) {
    const CLI::Formatter formatter;
    OptionEntry entry;
    if (option.get_positional()) {
        entry.names = {option.get_name(true)};
        entry.usage = formatter.make_option_usage(&option);
    } else {
        for (const std::string& name : option.get_snames()) entry.names.push_back("-" + name);
        for (const std::string& name : option.get_lnames()) entry.names.push_back("--" + name);
    }
    entry.heading = CLI::detail::join(entry.names, ", ") + formatter.make_option_opts(&option);
    entry.description = option.get_description();
    readValue(option, entry);
    return entry;
}

CommandEntry describeCommand(const CLI::App& app, const std::map<const CLI::App*, std::string>& examples) {
    CommandEntry entry;
    entry.name = app.get_parent() == nullptr ? "" : app.get_name();
    entry.description = app.get_description();
    entry.examples = examples.at(&app);
    for (const CLI::Option* option : app.get_options()) {
        (option->get_positional() ? entry.positionals : entry.options).push_back(describeOption(*option));
    }
    return entry;
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream file;
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.open(path, std::ios::binary);
    file << text;
    file.close();
}

}  // namespace

Reference makeReference(const CLI::App& program, const std::map<const CLI::App*, std::string>& examples) {
    Reference reference;
    reference.program = program.get_name();
    reference.version = program.version();
    reference.common = describeCommand(program, examples);
    for (const CLI::Option* option : program.get_options()) {
        if (option == program.get_help_ptr() || option == program.get_version_ptr()) continue;
        reference.everywhere.push_back(describeOption(*option));
    }
    for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
        reference.commands.push_back(describeCommand(*command, examples));
    }
    return reference;
}

void writeReference(const Reference& reference, const std::string& folder) {
    const std::string path = folder + "/";
    writeFile(path + reference.program + ".1", manualPage(reference));
    writeFile(path + reference.program + ".bash", bashCompletion(reference));
    writeFile(path + "_" + reference.program, zshCompletion(reference));
    writeFile(path + reference.program + ".fish", fishCompletion(reference));
}

}  // namespace tools
