#include "winlayer/windows/message_queue.h"

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
    Queue& queue = queues_[thread];
    queue.posted.push_back(message);
    queue.arrived = true;
    arrival_.notify_all();
}

void MessageQueues::postQuit(DWORD thread, int exitCode) {
    const std::lock_guard lock(mutex_);
    Queue& queue = queues_[thread];
    queue.quit = exitCode;
    queue.arrived = true;
    arrival_.notify_all();
}

void MessageQueues::send(DWORD thread, std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    Queue& queue = queues_[thread];
    queue.sent.push_back(std::move(work));
    queue.arrived = true;
    arrival_.notify_all();
}

// Runs without the lock, because the work may use queues itself. What it sends to its own thread waits for
// the next call, so work may send itself again.
void MessageQueues::runSent(DWORD thread) {
    if (atEveryLook_) {
        atEveryLook_();
    }
    std::vector<std::function<void()>> pending;
    {
        const std::lock_guard lock(mutex_);
        pending.swap(queues_[thread].sent);
    }
    for (const std::function<void()>& work : pending) {
        work();
    }
}

bool MessageQueues::peek(DWORD thread, const Wanted& wanted, bool remove, MSG& message) {
    const std::lock_guard lock(mutex_);
    std::deque<MSG>& posted = queues_[thread].posted;
    const auto found = std::find_if(posted.begin(), posted.end(), wanted);
    if (found == posted.end()) {
        return false;
    }
    message = *found;
    if (remove) {
        posted.erase(found);
    }
    return true;
}

bool MessageQueues::peekQuit(DWORD thread, bool remove, MSG& message) {
    const std::lock_guard lock(mutex_);
    Queue& queue = queues_[thread];
    if (!queue.quit || !queue.posted.empty()) {
        return false;
    }
    message = {nullptr, WM_QUIT, static_cast<WPARAM>(*queue.quit), 0, GetTickCount(), {}};
    if (remove) {
        queue.quit.reset();
    }
    return true;
}

void MessageQueues::forget(HWND window) {
    const std::lock_guard lock(mutex_);
    for (auto& [thread, queue] : queues_) {
        std::erase_if(queue.posted, [&](const MSG& message) { return message.hwnd == window; });
    }
}

void MessageQueues::wait(DWORD thread) {
    std::unique_lock lock(mutex_);
    Queue& queue = queues_[thread];
    arrival_.wait(lock, [&] { return queue.arrived || !queue.sent.empty(); });
    queue.arrived = false;
}

}  // namespace winlayer
