#pragma once
#include <deque>
#include <functional>
#include <map>
#include <mutex>

#include "winlayer/include/windows.h"

namespace winlayer {

// The threads' message queues: posted messages, and work sent from elsewhere that a thread does when it looks
// at its queue.
class MessageQueues {
public:
    void post(DWORD thread, const MSG& message);
    // Runs on the thread inside its next PeekMessageA, as a message sent from another thread would.
    void send(DWORD thread, std::function<void()> work);
    // Runs pending sent work, then gives the first posted message in [first, last] (0, 0 = any).
    bool peek(DWORD thread, UINT first, UINT last, bool remove, MSG& message);

private:
    struct Queue {
        std::deque<MSG> posted;
        std::deque<std::function<void()>> sent;
    };
    std::mutex mutex_;
    std::map<DWORD, Queue> queues_;
};

}  // namespace winlayer
