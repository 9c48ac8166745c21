#include "winlayer/kernel/host_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>

namespace winlayer {

namespace {

// Runs between fork and exec, where only async-signal-safe calls are allowed. Ends by starting the program,
// which closes the pipe, or by writing the reason into the pipe.
[[noreturn]] void become(const char* program, char* const* arguments, const char* folder, int report) {
    const bool there = *folder == 0 || ::chdir(folder) == 0;
    if (there) {
        ::execv(program, arguments);
    }
    const int reason = errno;
    const auto written = ::write(report, &reason, sizeof reason);
    ::_exit(written == sizeof reason ? 1 : 2);
}

}  // namespace

int startDetached(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                  const std::filesystem::path& folder) {
    std::vector<char*> texts;
    for (const std::string& argument : arguments) {
        texts.push_back(const_cast<char*>(argument.c_str()));
    }
    texts.push_back(nullptr);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return errno;
    }
    // The intermediate child exits at once, so that no parent has to wait for the program.
    const pid_t between = ::fork();
    if (between == 0) {
        ::setsid();
        const pid_t child = ::fork();
        if (child == 0) {
            become(program.c_str(), texts.data(), folder.c_str(), ends[1]);
        }
        ::_exit(child < 0 ? 1 : 0);
    }
    int reason = between < 0 ? errno : 0;
    ::close(ends[1]);
    if (between > 0) {
        int status = 0;
        ::waitpid(between, &status, 0);
        const bool told = ::read(ends[0], &reason, sizeof reason) == sizeof reason;
        reason = told ? reason : WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : EAGAIN;
    }
    ::close(ends[0]);
    return reason;
}

std::filesystem::path findHostProgram(const std::string& name) {
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::filesystem::path program = std::filesystem::path(folder) / name;
        if (!folder.empty() && ::access(program.c_str(), X_OK) == 0) {
            return program;
        }
    }
    return {};
}

}  // namespace winlayer
