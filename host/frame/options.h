#pragma once
#include <optional>
#include <string>

#include "host/frame/platform.h"

namespace host {

// The command line's options. Texts are as the user wrote them.
struct Options {
    enum class Action { run, install, uninstall, help } action = Action::run;
    std::string installFolder;  // --install DIR
    std::string component;      // --component: the library, or for a run the name of its listing
    std::optional<std::string> script;
    std::string screenshots;
    Platform::Options platform;
};

// Throws Failure (usage) for invalid options.
Options parseOptions(int argc, const char* const* argv);
// `platform`, `media`: the platform's help on its own options and on the states of a diskette.
std::string helpText(const std::string& platform, const std::string& media);

}  // namespace host
