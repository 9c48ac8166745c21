#include "host/frame/options.h"

#include <map>

#include "host/frame/failure.h"
#include "host/frame/script.h"

namespace host {

namespace {

// The variables that receive the options' values.
std::map<std::string, std::string*> valueOptions(Options& options, std::string& script) {
    return {{"--install", &options.installFolder},
            {"--component", &options.component},
            {"--script", &script},
            {"--screenshots", &options.screenshots},
            {"--image", &options.platform.image},
            {"--windows", &options.platform.windows},
            {"--state", &options.platform.stateFolder}};
}

void check(const Options& options) {
    const bool runs = options.action == Options::Action::run;
    if (!runs && (options.script || !options.screenshots.empty()))
        throw Failure(ExitCode::usage, "--script and --screenshots go with a run of the wizard only");
    if (!options.screenshots.empty() && !options.script)
        throw Failure(ExitCode::usage, "--screenshots needs --script");
    if (options.platform.noDrive && !options.platform.image.empty())
        throw Failure(ExitCode::usage, "--image needs the drive that --no-drive takes away");
}

}  // namespace

Options parseOptions(int argc, const char* const* argv) {
    Options options;
    std::string script;
    const auto values = valueOptions(options, script);
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "-h" || name == "--help") {
            options.action = Options::Action::help;
            return options;
        }
        if (name == "--uninstall") {
            options.action = Options::Action::uninstall;
        } else if (name == "--no-pauses") {
            options.platform.noPauses = true;
        } else if (name == "--no-drive") {
            options.platform.noDrive = true;
        } else if (const auto value = values.find(name); value == values.end()) {
            throw Failure(ExitCode::usage, "there is no option '" + name + "'");
        } else if (i + 1 == argc || (*argv[i + 1] == '\0' && name != "--script")) {
            throw Failure(ExitCode::usage, name + " needs a value");
        } else {
            *value->second = argv[++i];
            if (name == "--install") options.action = Options::Action::install;
            if (name == "--script") options.script = script;
        }
    }
    check(options);
    options.platform.window = options.action == Options::Action::run && !options.script;
    options.platform.pictures = !options.screenshots.empty();
    return options;
}

std::string helpText(const std::string& platform, const std::string& media) {
    return std::string(
               "Usage: host [options]\n"
               "\n"
               "Opens the wizard frame with the component that is installed.\n"
               "\n"
               "  --install DIR        enters the component and the product's folder DIR, then ends\n"
               "  --uninstall          removes the component's entry, then ends\n"
               "  --component NAME     with --install its library (usual: QXCMendwell.dll beside this\n"
               "                       program), otherwise its listing (usual: Mendwell)\n"
               "  --script STEPS       carries out the steps without a user and prints a transcript\n"
               "  --screenshots DIR    with --script: writes a PNG of the frame after each step\n") +
           platform +
           "  -h, --help           this text\n"
           "\n"
           "Steps of a script, separated by semicolons:\n" +
           scriptHelp() +
           "\n"
           "States of a diskette:\n" +
           media +
           "\n"
           "Examples:\n"
           "  host --install product\n"
           "  host --script 'next; select 1012; next; next; wait; finish; cancel'\n"
           "\n"
           "Exit codes: 0 done; 1 something failed; 2 wrong usage; 3 a step of the script cannot be\n"
           "done; 4 the component is not installed or cannot be loaded; 5 no window can be shown\n"
           "here.\n";
}

}  // namespace host
