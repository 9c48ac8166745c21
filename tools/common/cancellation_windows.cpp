// Control-C on a Windows console, reported on a separate thread.
#include <windows.h>

#include <atomic>

#include "CSyncObject.h"
#include "tools/common/cancellation.h"
#include "tools/common/exit_code.h"

namespace tools {

namespace {

std::atomic<bool> cancelled = false;

// The current handler; the lock keeps Windows' thread from calling it while the program's thread removes it.
struct Current {
    UTILS::CCriticalSection guard;
    std::function<void()> handler;
};

Current& current() {
    static Current only;
    return only;
}

// Calls the handler; false when there is none.
bool callHandler() {
    const UTILS::SectionGuard lock(current().guard);
    if (!current().handler) return false;
    current().handler();
    return true;
}

// An operation clears earlier cancels at its start, so the request is repeated until it has ended. When the
// console is closed, Windows ends the program as soon as this function returns, so it does not return:
// Windows waits a while, in which the program ends by itself.
BOOL WINAPI onControl(DWORD event) {
    constexpr DWORD againAfter = 50;  // milliseconds
    cancelled = true;
    while (callHandler()) Sleep(againAfter);
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

}  // namespace

Cancellation::Cancellation() {
    current();  // constructed before another thread can use it
    SetConsoleCtrlHandler(onControl, TRUE);
}

bool Cancellation::requested() const {
    return cancelled;
}

void Cancellation::check() const {
    if (requested()) throw Problem(ExitCode::cancelled, "cancelled");
}

// A cancel between the check and the handler's installation waits for the lock and then finds the handler.
Cancellation::Scope::Scope(const Cancellation& cancellation, std::function<void()> handler) {
    const UTILS::SectionGuard lock(current().guard);
    cancellation.check();
    current().handler = std::move(handler);
}

Cancellation::Scope::~Scope() {
    const UTILS::SectionGuard lock(current().guard);
    current().handler = {};
}

}  // namespace tools
