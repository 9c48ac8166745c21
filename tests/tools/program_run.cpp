#include "tests/tools/program_run.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

namespace {

class Child {
public:
    Child(const std::string& program, const std::vector<std::string>& arguments,
          const std::filesystem::path& folder) {
        if (pipe2(out_.data(), O_CLOEXEC) != 0 || pipe2(err_.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipes");
        }
        pid_ = fork();
        if (pid_ == 0) start(program, arguments, folder);
        close(out_[1]);
        close(err_[1]);
    }

    // Reads both streams to their ends; `seen` looks at standard error after each piece.
    template <class Seen>
    ProgramRun finish(Seen seen) {
        ProgramRun run;
        std::array<pollfd, 2> streams{{{out_[0], POLLIN, 0}, {err_[0], POLLIN, 0}}};
        while (streams[0].fd >= 0 || streams[1].fd >= 0) {
            poll(streams.data(), streams.size(), -1);
            take(streams[0], run.out);
            take(streams[1], run.err);
            seen(run.err, pid_);
        }
        int status = 0;
        waitpid(pid_, &status, 0);
        if (WIFEXITED(status)) run.exitCode = WEXITSTATUS(status);
        return run;
    }

private:
    [[noreturn]] void start(const std::string& program, const std::vector<std::string>& arguments,
                            const std::filesystem::path& folder) {
        std::vector<char*> words{const_cast<char*>(program.c_str())};
        for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        const int null = open("/dev/null", O_RDONLY);
        if (chdir(folder.c_str()) == 0 && dup2(null, 0) == 0 && dup2(out_[1], 1) == 1 &&
            dup2(err_[1], 2) == 2) {
            execv(program.c_str(), words.data());
        }
        _exit(127);
    }

    static void take(pollfd& stream, std::string& text) {
        if (stream.fd < 0 || stream.revents == 0) return;
        std::array<char, 4096> piece{};
        const ssize_t count = read(stream.fd, piece.data(), piece.size());
        if (count > 0) {
            text.append(piece.data(), static_cast<std::size_t>(count));
        } else {
            close(stream.fd);
            stream.fd = -1;
        }
    }

    pid_t pid_ = -1;
    std::array<int, 2> out_{};
    std::array<int, 2> err_{};
};

std::string programPath(const std::string& name) {
    return BUILD_DIRECTORY "/tools/" + name;
}

}  // namespace

ProgramRun runProgram(const std::string& name, const std::vector<std::string>& arguments,
                      const std::filesystem::path& folder) {
    return Child(programPath(name), arguments, folder).finish([](const std::string&, pid_t) {});
}

ProgramRun runShell(const std::string& command, const std::filesystem::path& folder) {
    const std::string path = "PATH=" BUILD_DIRECTORY "/tools:$PATH\n";
    return Child("/bin/sh", {"-c", path + command}, folder).finish([](const std::string&, pid_t) {});
}

bool runWithSmallDisk(const std::string& command, const std::filesystem::path& folder, ProgramRun& run) {
    std::filesystem::create_directory(folder / "full");
    const std::string disk = "unshare -rm sh -c 'mount -t tmpfs -o size=64k none full && ";
    if (runShell(disk + "true'", folder).exitCode != 0) return false;
    run = runShell(disk + command + "'", folder);
    return true;
}

ProgramRun runAndSignal(const std::string& name, const std::vector<std::string>& arguments,
                        const std::filesystem::path& folder, const std::string& cue, int signal) {
    bool sent = false;
    return Child(programPath(name), arguments, folder).finish([&](const std::string& err, pid_t pid) {
        if (!sent && err.find(cue) != std::string::npos) {
            kill(pid, signal);
            sent = true;
        }
    });
}
