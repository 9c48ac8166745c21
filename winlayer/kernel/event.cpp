#include "winlayer/kernel/event.h"

#include <chrono>

#include "winlayer/base/clock.h"
#include "winlayer/include/synchapi.h"

namespace winlayer {

void EventObject::set() {
    const std::lock_guard lock(mutex_);
    signalled_ = true;
    if (manualReset_) {
        changed_.notify_all();
    } else {
        changed_.notify_one();
    }
}

void EventObject::reset() {
    const std::lock_guard lock(mutex_);
    signalled_ = false;
}

void EventObject::pulse() {
    const std::lock_guard lock(mutex_);
    signalled_ = false;
    if (manualReset_) {
        ++generation_;
        changed_.notify_all();
    } else if (released_ < waiting_) {
        ++released_;
        changed_.notify_one();
    }
}

// Ends a wait if the event is signalled; resets an automatic event.
bool EventObject::take() {
    if (!signalled_) {
        return false;
    }
    signalled_ = manualReset_;
    return true;
}

bool EventObject::wait(DWORD milliseconds, Clock& clock) {
    std::unique_lock lock(mutex_);
    if (take()) {
        return true;
    }
    if (milliseconds == 0) {
        return false;
    }
    if (milliseconds != INFINITE && clock.stopped()) {
        lock.unlock();
        clock.advance(std::int64_t{milliseconds} * 1'000'000);
        return false;
    }
    const unsigned start = generation_;
    const auto letGo = [&] {
        if (released_ > 0) {
            --released_;
            return true;
        }
        return generation_ != start || take();
    };
    ++waiting_;
    bool signalled = true;
    if (milliseconds == INFINITE) {
        changed_.wait(lock, letGo);
    } else {
        signalled = changed_.wait_for(lock, std::chrono::milliseconds(milliseconds), letGo);
    }
    --waiting_;
    return signalled;
}

}  // namespace winlayer
