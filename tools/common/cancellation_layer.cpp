// Cancels by POSIX signals.
#include <atomic>
#include <csignal>

#include "tools/common/cancellation.h"
#include "tools/common/exit_code.h"
#include "winlayer/machine.h"

namespace tools {

namespace {

std::atomic<bool> cancelled = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may take no lock");

}  // namespace

// The handler only sets a flag, so that no second thread has to wait for signals: in a single-threaded
// program every lock and every transfer costs less. Interrupted host calls continue. A reader that closes the
// output must not end the program either: its hidden files would remain.
Cancellation::Cancellation() {
    std::signal(SIGPIPE, SIG_IGN);
    struct sigaction action {};
    action.sa_handler = [](int) { cancelled = true; };
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

bool Cancellation::requested() const {
    return cancelled;
}

void Cancellation::check() const {
    if (requested()) throw Problem(ExitCode::cancelled, "cancelled");
}

// The libraries check the current machine's message queue before every test for a cancel.
Cancellation::Scope::Scope(const Cancellation& cancellation, std::function<void()> handler) {
    winlayer::Machine::current().messages.atEveryLook(
        [&cancellation, handler = std::move(handler), told = false]() mutable {
            if (told || !cancellation.requested()) return;
            told = true;
            handler();
        });
}

Cancellation::Scope::~Scope() {
    winlayer::Machine::current().messages.atEveryLook({});
}

}  // namespace tools
