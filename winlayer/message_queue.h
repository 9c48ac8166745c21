#pragma once
#include <deque>
#include <functional>
#include <map>
#include <mutex>

#include "winlayer/include/windows.h"

namespace winlayer {

// The threads' message queues: posted messages, and work sent from elsewhere that a thread does when it looks
// at its queue. Thread rule: every operation may be called from any thread.
class MessageQueues {
public:
    // False when the thread has no queue; a thread gets its queue when it first looks at it or posts to
    // itself.
    bool hasQueue(DWORD thread);
    void makeQueue(DWORD thread);

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

    void runSent(DWORD thread);

    std::mutex mutex_;
    std::map<DWORD, Queue> queues_;
};

}  // namespace winlayer
