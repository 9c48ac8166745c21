#pragma once
#include <optional>
#include <string>

#include "host/frame/platform.h"

namespace host {

// What the command line asks for. Texts are as the user wrote them.
struct Options {
    enum class Action { run, install, uninstall, help } action = Action::run;
    std::string installFolder;  // --install DIR
    std::string component;      // --component: its library, or for a run the name of its listing
    std::optional<std::string> script;
    std::string screenshots;
    Platform::Options platform;
};

// Throws Failure (usage) for what is not understood.
Options parseOptions(int argc, const char* const* argv);
// `platform`, `media`: what the platform says of the options that only it has, and of a diskette's states.
std::string helpText(const std::string& platform, const std::string& media);

}  // namespace host
