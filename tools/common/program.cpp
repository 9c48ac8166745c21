#include "tools/common/program.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <new>
#include <system_error>

#include "std_exception.h"
#include "tools/common/reasons.h"
#include "tools/common/reference.h"
#include "tools/common/this_system.h"

namespace tools {

namespace {

constexpr int schemaVersion = 1;

// The standard library's texts are for programmers.
std::string wordsFor(const std::exception& unexpected) {
    if (dynamic_cast<const std::bad_alloc*>(&unexpected) != nullptr) return noMemoryText;
    const auto* fault = dynamic_cast<const std::system_error*>(&unexpected);
    if (fault != nullptr) return fault->code().message();
    const bool report = dynamic_cast<const UTILS::std_exception*>(&unexpected) != nullptr;
    return report ? reasonOf(unexpected) : unexpected.what();
}

bool asksForJson(const std::vector<std::string>& words) {
    return std::find(words.begin(), words.end(), "--json") != words.end();
}

}  // namespace

std::function<void(const std::string&)> Session::warnings() {
    return [this](const std::string& text) {
        if (json) {
            warned.push_back(text);
        } else {
            console.warning(text);
        }
    };
}

int runToTheEnd(const char* name, int (*program)(int argc, char** argv), int argc, char** argv) {
    const char* reason = noMemoryText;
    try {
        return program(argc, argv);
    } catch (const std::bad_alloc&) {
    } catch (const std::exception&) {
        reason = "an unexpected fault";
    }
    std::cerr << name << ": error: " << reason << '\n';
    return static_cast<int>(ExitCode::failure);
}

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
    if (argc == 3 && std::string_view(argv[1]) == "--write-reference") {  // used by the build of the package
        return writeReferenceTo(argv[2]);
    }
    ExitCode code = ExitCode::success;
    std::vector<std::string> words = commandLine(argc, argv);
    words.erase(words.begin(), words.begin() + std::min<std::ptrdiff_t>(1, argc));
    try {
        app_.parse(std::vector<std::string>(words.rbegin(), words.rend()));  // CLI11 expects reverse order
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
        object_.member("schema_version", schemaVersion);
        object_.member("program", name_);
        finishObject(ExitCode::usage, usageText(fault));
    } else {
        const auto chosen = app_.get_subcommands();
        const std::string command = chosen.empty() ? name_ : name_ + " " + chosen.front()->get_name();
        Console(name_, true).error(usageText(fault), "Try '" + command + " --help'.");
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
    Session session{console, json_, object_};
    object_.member("schema_version", schemaVersion);
    object_.member("program", name_);
    object_.member("command", commandName_);
    ExitCode code = ExitCode::success;
    std::string error;
    try {
        bodies_.at(command)(session);
    } catch (const Problem& problem) {
        code = problem.code();
        error = problem.what();
    } catch (const std::exception& unexpected) {
        code = ExitCode::failure;
        error = wordsFor(unexpected);
    }
    console.endProgress();
    if (json_) {
        finishObject(code, error, session.warned);
    } else if (code != ExitCode::success) {
        console.error(error);
    }
    return code;
}

void Program::finishObject(ExitCode code, const std::string& error, const std::vector<std::string>& warned) {
    object_.member("result", describe(code).name);
    object_.member("exit_code", static_cast<int>(code));
    if (code != ExitCode::success) object_.member("error", error);
    if (!warned.empty()) object_.beginArray("warnings");
    for (const std::string& text : warned) object_.element(text);
    object_.end();
}

}  // namespace tools
