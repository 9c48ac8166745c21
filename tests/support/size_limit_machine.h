#pragma once
#include <sys/resource.h>

#include <csignal>

// Lets no file of this process grow beyond a size, as a full disk would.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

private:
    void (*signal_)(int) = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before_{};
};
