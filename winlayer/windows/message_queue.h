#pragma once
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The threads' message queues: posted messages, and work sent from elsewhere that a thread does when it looks
// at its queue. Thread rule: every operation may be called from any thread.
class MessageQueues {
public:
    // The current machine's.
    static MessageQueues& current();

    using Wanted = std::function<bool(const MSG&)>;

    // False when the thread has no queue; a thread gets its queue when it first looks at it or posts to
    // itself.
    bool hasQueue(DWORD thread);
    void makeQueue(DWORD thread);

    void post(DWORD thread, const MSG& message);
    // Asks the thread's message loop to end; seen when no posted message is left.
    void postQuit(DWORD thread, int exitCode);
    // Runs on the thread inside its next look at the queue, as a message sent from another thread would.
    void send(DWORD thread, std::function<void()> work);
    // Runs inside every runSent, on the looking thread; empty for none. Set while no thread looks.
    void atEveryLook(std::function<void()> work) { atEveryLook_ = std::move(work); }

    void runSent(DWORD thread);
    // Gives the first posted message that is wanted.
    bool peek(DWORD thread, const Wanted& wanted, bool remove, MSG& message);
    bool peekQuit(DWORD thread, bool remove, MSG& message);
    // Drops what was posted to a window.
    void forget(HWND window);
    // Waits until something is posted or sent to the thread.
    void wait(DWORD thread);

private:
    struct Queue {
        std::deque<MSG> posted;
        std::vector<std::function<void()>> sent;
        std::optional<int> quit;
        bool arrived = false;  // something came since the last wait
    };

    std::mutex mutex_;
    std::condition_variable arrival_;
    std::map<DWORD, Queue> queues_;
    std::function<void()> atEveryLook_;
};

}  // namespace winlayer
