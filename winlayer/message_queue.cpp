#include "winlayer/message_queue.h"

#include <algorithm>

namespace winlayer {

bool MessageQueues::hasQueue(DWORD thread) {
    const std::lock_guard lock(mutex_);
    return queues_.contains(thread);
}

void MessageQueues::makeQueue(DWORD thread) {
    const std::lock_guard lock(mutex_);
    queues_.try_emplace(thread);
}

void MessageQueues::post(DWORD thread, const MSG& message) {
    const std::lock_guard lock(mutex_);
    queues_[thread].posted.push_back(message);
}

void MessageQueues::send(DWORD thread, std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    queues_[thread].sent.push_back(std::move(work));
}

// Outside the lock, because the work may post, send and look at queues itself. What it sends to its own
// thread waits for the next look, so that work can follow a thread from look to look.
void MessageQueues::runSent(DWORD thread) {
    std::deque<std::function<void()>> pending;
    {
        const std::lock_guard lock(mutex_);
        pending.swap(queues_[thread].sent);
    }
    for (const std::function<void()>& work : pending) {
        work();
    }
}

bool MessageQueues::peek(DWORD thread, UINT first, UINT last, bool remove, MSG& message) {
    runSent(thread);
    const std::lock_guard lock(mutex_);
    std::deque<MSG>& posted = queues_[thread].posted;
    const bool any = first == 0 && last == 0;
    const auto found = std::find_if(posted.begin(), posted.end(), [&](const MSG& candidate) {
        return any || (candidate.message >= first && candidate.message <= last);
    });
    if (found == posted.end()) {
        return false;
    }
    message = *found;
    if (remove) {
        posted.erase(found);
    }
    return true;
}

}  // namespace winlayer
