// Signals of a POSIX system.
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

// The handler only leaves a mark, so that no second thread has to wait for signals: in a program of one
// thread every lock and every transfer costs less. Interrupted calls of the host go on. A reader of the
// output that goes away must not end the program either: it would leave its hidden files.
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

// The libraries look at the current machine's message queue before every test for a cancel.
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
