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

// The threads' message queues: posted messages, and sent work that a thread runs when it checks its queue.
// Thread rule: any thread may call every operation.
class MessageQueues {
public:
    // The current machine's.
    static MessageQueues& current();

    using Wanted = std::function<bool(const MSG&)>;

    // False if the thread has no queue; a thread gets one when it first checks it or posts to itself.
    bool hasQueue(DWORD thread);
    void makeQueue(DWORD thread);

    void post(DWORD thread, const MSG& message);
    // Asks the thread's message loop to end once no posted message is left.
    void postQuit(DWORD thread, int exitCode);
    // Runs on the thread when it next checks its queue, as a message sent from another thread would.
    void send(DWORD thread, std::function<void()> work);
    // Runs in every runSent, on its thread; empty for none. Set it while no thread checks its queue.
    void atEveryLook(std::function<void()> work) { atEveryLook_ = std::move(work); }

    void runSent(DWORD thread);
    // Returns the first posted message that is wanted.
    bool peek(DWORD thread, const Wanted& wanted, bool remove, MSG& message);
    bool peekQuit(DWORD thread, bool remove, MSG& message);
    // Drops the messages posted to a window.
    void forget(HWND window);
    // Waits until something is posted or sent to the thread.
    void wait(DWORD thread);

private:
    struct Queue {
        std::deque<MSG> posted;
        std::vector<std::function<void()>> sent;
        std::optional<int> quit;
        bool arrived = false;  // since the last wait
    };

    std::mutex mutex_;
    std::condition_variable arrival_;
    std::map<DWORD, Queue> queues_;
    std::function<void()> atEveryLook_;
};

}  // namespace winlayer
