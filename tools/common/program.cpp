#include "tools/common/program.h"

#include <exception>
#include <iostream>
#include <string_view>

namespace tools {

namespace {

constexpr int schemaVersion = 1;

bool asksForJson(int argc, const char* const* argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--json") return true;
    }
    return false;
}

}  // namespace

Program::Program(std::string name, std::string description, std::string examples)
    : name_(std::move(name)), app_(std::move(description), name_) {
    app_.require_subcommand(1);
    app_.fallthrough();
    app_.set_version_flag("-V,--version", name_ + " " PROGRAM_VERSION);
    app_.set_help_flag("-h,--help", "Show this help and end");
    app_.add_flag("-q,--quiet", quiet_, "No status lines and no progress");
    app_.add_flag("--json", json_, "Print one JSON object as the result");
    app_.footer("Examples:\n" + std::move(examples) + "\n" + exitCodeHelp());
}

CLI::App* Program::command(const std::string& name, const std::string& description,
                           const std::string& examples, Body body) {
    CLI::App* command = app_.add_subcommand(name, description);
    command->fallthrough();
    command->footer("Options of every command: -q/--quiet, --json.\n\nExamples:\n" + examples + "\n" +
                    exitCodeHelp());
    bodies_[command] = std::move(body);
    return command;
}

int Program::run(int argc, const char* const* argv) {
    try {
        app_.parse(argc, argv);
    } catch (const CLI::ParseError& fault) {
        return usageError(fault, asksForJson(argc, argv));
    }
    const ExitCode code = runCommand();
    std::cout.flush();
    return static_cast<int>(code);
}

int Program::usageError(const CLI::ParseError& fault, bool json) {
    if (fault.get_exit_code() == 0) return app_.exit(fault);  // help and version
    if (json) {
        printObject(ExitCode::usage, fault.what());
    } else {
        Console(name_, true).error(std::string(fault.what()) + "\nTry '" + name_ + " --help'.");
    }
    return static_cast<int>(ExitCode::usage);
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
    std::cout << object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

}  // namespace tools
