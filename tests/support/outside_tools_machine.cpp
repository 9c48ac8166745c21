#include "support/outside_tools.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <sstream>

namespace {

using Clock = std::chrono::steady_clock;

// System programs lie in folders that a user's PATH may lack.
std::string locate(const std::string& program) {
    if (program.find('/') != std::string::npos) {
        return ::access(program.c_str(), X_OK) == 0 ? program : "";
    }
    const char* const path = std::getenv("PATH");
    std::istringstream folders(std::string(path == nullptr ? "" : path) + ":/usr/sbin:/sbin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string candidate = folder + "/" + program;
        if (::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return "";
}

[[noreturn]] void become(const std::string& program, const std::vector<std::string>& command, int output) {
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    const int nothing = ::open("/dev/null", O_RDONLY);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    ::setpgid(0, 0);
    ::setenv("LC_ALL", "C", 1);
    ::execv(program.c_str(), arguments.data());
    ::_exit(127);
}

// Reads until the other side closes; false when the time is over before.
bool collect(int input, Clock::time_point deadline, std::string& output) {
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd wait{input, POLLIN, 0};
        if (left.count() <= 0 || ::poll(&wait, 1, static_cast<int>(left.count())) <= 0) {
            return false;
        }
        const ssize_t count = ::read(input, buffer.data(), buffer.size());
        if (count <= 0) {
            return true;
        }
        output.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

}  // namespace

ToolRun runTool(const std::vector<std::string>& command, std::chrono::seconds limit) {
    ToolRun run;
    const std::string program = locate(command.front());
    std::array<int, 2> pipe{};
    if (program.empty() || ::pipe2(pipe.data(), O_CLOEXEC) != 0) {
        return run;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        become(program, command, pipe[1]);
    }
    ::close(pipe[1]);
    if (child > 0) {
        run.timedOut = !collect(pipe[0], Clock::now() + limit, run.output);
        if (run.timedOut) {
            ::kill(-child, SIGKILL);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        run.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }
    ::close(pipe[0]);
    return run;
}

std::string missingTool(std::initializer_list<const char*> programs) {
    for (const char* const program : programs) {
        if (locate(program).empty()) {
            return program;
        }
    }
    return "";
}

bool toolsAreRequired() {
    return std::getenv("CI") != nullptr;
}
