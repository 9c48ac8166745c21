#include "tools/common/program.h"

#include <algorithm>
#include <exception>
#include <iostream>

#include "tools/common/this_system.h"

#include "tools/common/reference.h"

namespace tools {

namespace {

constexpr int schemaVersion = 1;

bool asksForJson(const std::vector<std::string>& words) {
    return std::find(words.begin(), words.end(), "--json") != words.end();
}

}  // namespace

CLI::Option* named(CLI::Option* option, const char* kind) {
    const auto refuseEmpty = [](std::string& value) {
        return value.empty() ? std::string("an empty name names nothing") : std::string();
    };
    return option->type_name(kind)->check(CLI::Validator(refuseEmpty, ""));
}

Program::Program(std::string name, std::string description, std::string examples)
    : name_(std::move(name)), app_(std::move(description), name_) {
    app_.require_subcommand(1);
    app_.fallthrough();
    app_.set_version_flag("-V,--version", name_ + " " PROGRAM_VERSION, "Show the version and end");
    app_.set_help_flag("-h,--help", "Show this help and end");
    app_.add_flag("-q,--quiet", quiet_, "No status lines and no progress");
    app_.add_flag("--json", json_, "Print one JSON object as the result");
    app_.footer("Examples:\n" + examples + "\n" + exitCodeHelp());
    examples_[&app_] = std::move(examples);
}

CLI::App* Program::command(const std::string& name, const std::string& description,
                           const std::string& examples, Body body) {
    CLI::App* command = app_.add_subcommand(name, description);
    command->fallthrough();
    command->footer("Options of every command: -q/--quiet, --json.\n\nExamples:\n" + examples + "\n" +
                    exitCodeHelp());
    bodies_[command] = std::move(body);
    examples_[command] = examples;
    return command;
}

int Program::run(int argc, const char* const* argv) {
    fillStandardStreams();
    if (argc == 3 &&
        std::string_view(argv[1]) == "--write-reference") {  // for the build of the program's package
        return writeReferenceTo(argv[2]);
    }
    ExitCode code = ExitCode::success;
    std::vector<std::string> words = commandLine(argc, argv);
    words.erase(words.begin(), words.begin() + std::min<std::ptrdiff_t>(1, argc));
    try {
        app_.parse(std::vector<std::string>(words.rbegin(), words.rend()));  // as CLI11 wants them
        code = runCommand();
    } catch (const CLI::ParseError& fault) {
        code = answer(fault, asksForJson(words));
    }
    if (!std::cout.flush() && code == ExitCode::success) {
        Console(name_, true).error("cannot write to standard output");
        code = ExitCode::failure;
    }
    return static_cast<int>(code);
}

int Program::writeReferenceTo(const std::string& folder) const {
    try {
        writeReference(makeReference(app_, examples_), folder);
    } catch (const std::exception& fault) {
        Console(name_, true).error("cannot write the reference to " + folder + ": " + fault.what());
        return static_cast<int>(ExitCode::failure);
    }
    return static_cast<int>(ExitCode::success);
}

ExitCode Program::answer(const CLI::ParseError& fault, bool json) {
    if (fault.get_exit_code() == 0) {  // help and version
        app_.exit(fault);
        return ExitCode::success;
    }
    if (json) {
        printObject(ExitCode::usage, usageText(fault));
    } else {
        const auto chosen = app_.get_subcommands();
        const std::string command = chosen.empty() ? name_ : name_ + " " + chosen.front()->get_name();
        Console(name_, true).error(usageText(fault) + "\nTry '" + command + " --help'.");
    }
    return ExitCode::usage;
}

std::string Program::usageText(const CLI::ParseError& fault) const {
    if (!app_.get_subcommands().empty()) return fault.what();
    std::string names;
    for (const CLI::App* command : app_.get_subcommands([](const CLI::App*) { return true; })) {
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    const std::vector<std::string> words = app_.remaining();
    return (words.empty() ? "name a command: " : "'" + words.front() + "' is no command; there are ") + names;
}

ExitCode Program::runCommand() {
    CLI::App* command = app_.get_subcommands().front();
    commandName_ = command->get_name();
    Console console(name_, quiet_);
    Session session{console, json_, result_};
    ExitCode code = ExitCode::success;
    std::string error;
    try {
        bodies_.at(command)(session);
    } catch (const Problem& problem) {
        code = problem.code();
        error = problem.what();
    } catch (const std::exception& unexpected) {
        code = ExitCode::failure;
        error = unexpected.what();
    }
    console.endProgress();
    if (json_) {
        printObject(code, error);
    } else if (code != ExitCode::success) {
        console.error(error);
    }
    return code;
}

void Program::printObject(ExitCode code, const std::string& error) {
    nlohmann::ordered_json object;
    object["schema_version"] = schemaVersion;
    object["program"] = name_;
    if (!commandName_.empty()) object["command"] = commandName_;
    object["result"] = describe(code).name;
    object["exit_code"] = static_cast<int>(code);
    if (code != ExitCode::success) object["error"] = error;
    for (auto& [key, value] : result_.items()) object[key] = value;
    const std::string text = object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    std::cout << encoded(Stream::out, text) << '\n';
}

}  // namespace tools
