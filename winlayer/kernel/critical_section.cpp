#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>

#include "winlayer/base/gate.h"
#include "winlayer/include/synchapi.h"

#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#endif

// Every string operation takes two locks, so entering and leaving a free section must cost almost nothing:
// one atomic instruction each, and none while the process has only one thread. Starting a second thread
// publishes all that the first has written, so a lock taken without atomics is seen as taken.

namespace {

constexpr std::uint32_t isFree = 0;
constexpr std::uint32_t isTaken = 1;
constexpr std::uint32_t isWaitedFor = 2;

// Its address identifies the thread.
thread_local char threadMark;

std::uintptr_t thisThread() {
    return reinterpret_cast<std::uintptr_t>(&threadMark);
}

bool onlyThread() {
#if __has_include(<sys/single_threaded.h>)
    return __libc_single_threaded != 0;
#else
    return false;
#endif
}

void sleepWhileWaitedFor(std::uint32_t& state) {
    ::syscall(SYS_futex, &state, FUTEX_WAIT_PRIVATE, isWaitedFor, nullptr, nullptr, 0);
}

void wakeOne(std::uint32_t& state) {
    ::syscall(SYS_futex, &state, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}

void take(CRITICAL_SECTION& section) {
    const std::atomic_ref<std::uint32_t> state(section.state);
    if (onlyThread() && state.load(std::memory_order_relaxed) == isFree) {
        state.store(isTaken, std::memory_order_relaxed);
        return;
    }
    std::uint32_t expected = isFree;
    if (state.compare_exchange_strong(expected, isTaken, std::memory_order_acquire)) {
        return;
    }
    // A waiter leaves the section marked as waited for: it cannot know whether it was the last one.
    while (state.exchange(isWaitedFor, std::memory_order_acquire) != isFree) {
        sleepWhileWaitedFor(section.state);
    }
}

void giveBack(CRITICAL_SECTION& section) {
    const std::atomic_ref<std::uint32_t> state(section.state);
    if (onlyThread()) {
        state.store(isFree, std::memory_order_relaxed);
    } else if (state.exchange(isFree, std::memory_order_release) == isWaitedFor) {
        wakeOne(section.state);
    }
}

}  // namespace

void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION section) {
    winlayer::entered(__func__);
    *section = {};
}

void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION section) {
    winlayer::entered(__func__);
    *section = {};
}

void WINAPI EnterCriticalSection(LPCRITICAL_SECTION section) {
    winlayer::entered(__func__);
    const std::atomic_ref<std::uintptr_t> owner(section->owner);
    const std::uintptr_t self = thisThread();
    if (owner.load(std::memory_order_relaxed) != self) {
        take(*section);
        owner.store(self, std::memory_order_relaxed);
    }
    ++section->depth;
}

// As on Windows, any caller releases one entry; the caller must make sure that it is the owner. A free
// section stays free.
void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION section) {
    winlayer::entered(__func__);
    if (section->depth > 0 && --section->depth == 0) {
        std::atomic_ref<std::uintptr_t>(section->owner).store(0, std::memory_order_relaxed);
        giveBack(*section);
    }
}
