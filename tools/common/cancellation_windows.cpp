// Control-C on a Windows console, which Windows reports on a thread of its own.
#include <windows.h>

#include <atomic>

#include "CSyncObject.h"
#include "tools/common/cancellation.h"
#include "tools/common/exit_code.h"

namespace tools {

namespace {

std::atomic<bool> cancelled = false;

// The handler in force, which Windows' thread must not call while the program's takes it away.
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

// An operation forgets at its start what it was asked before, so it is asked until it has ended. A console
// that is closed ends the program when this returns, so it does not: the program comes to its own end, for
// which Windows waits a while.
BOOL WINAPI onControl(DWORD event) {
    constexpr DWORD againAfter = 50;  // milliseconds
    cancelled = true;
    while (callHandler()) Sleep(againAfter);
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

}  // namespace

Cancellation::Cancellation() {
    current();  // before another thread can ask for it
    SetConsoleCtrlHandler(onControl, TRUE);
}

bool Cancellation::requested() const {
    return cancelled;
}

void Cancellation::check() const {
    if (requested()) throw Problem(ExitCode::cancelled, "cancelled");
}

// A cancel that comes between the look and the handler waits for the lock and then finds the handler.
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
