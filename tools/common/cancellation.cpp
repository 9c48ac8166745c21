#include "tools/common/cancellation.h"

#include <csignal>

#include "tools/common/exit_code.h"

namespace tools {

namespace {

sigset_t cancelSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    return signals;
}

}  // namespace

// The signals are blocked in every thread and taken by one that waits for them, so that the handler may use
// locks.
Cancellation::Cancellation() {
    const sigset_t signals = cancelSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    waiter_ = std::thread([this] { wait(); });
}

Cancellation::~Cancellation() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    pthread_kill(waiter_.native_handle(), SIGTERM);
    waiter_.join();
}

void Cancellation::wait() {
    const sigset_t signals = cancelSignals();
    for (;;) {
        int signal = 0;
        sigwait(&signals, &signal);
        const std::lock_guard lock(mutex_);
        if (ending_) return;
        requested_ = true;
        if (handler_) handler_();
    }
}

bool Cancellation::requested() const {
    const std::lock_guard lock(mutex_);
    return requested_;
}

void Cancellation::check() const {
    if (requested()) throw Problem(ExitCode::cancelled, "cancelled");
}

Cancellation::Scope::Scope(Cancellation& cancellation, std::function<void()> handler)
    : cancellation_(cancellation) {
    const std::lock_guard lock(cancellation_.mutex_);
    cancellation_.handler_ = std::move(handler);
    if (cancellation_.requested_) cancellation_.handler_();
}

Cancellation::Scope::~Scope() {
    const std::lock_guard lock(cancellation_.mutex_);
    cancellation_.handler_ = nullptr;
}

}  // namespace tools
