#include "tools/common/names.h"

#include <stdexcept>

#include "tools/common/exit_code.h"
#include "winlayer/code_pages.h"
#include "winlayer/machine.h"

namespace tools {

using winlayer::Machine;

std::string utf8(std::string_view ansi) {
    return winlayer::toUtf8(Machine::current(), ansi);
}

std::string ansi(std::string_view utf8) {
    std::string text;
    if (!winlayer::fromUtf8(Machine::current(), utf8, text)) {
        throw Problem(ExitCode::usage,
                      "'" + std::string(utf8) + "' has a character outside the ANSI code page");
    }
    return text;
}

std::string windowsPath(const std::filesystem::path& host) {
    try {
        return Machine::current().drives.fromHost(std::filesystem::absolute(host).lexically_normal());
    } catch (const std::invalid_argument&) {
        throw Problem(ExitCode::usage, "'" + host.string() + "' has a character outside the ANSI code page");
    }
}

}  // namespace tools
