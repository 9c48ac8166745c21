#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The timers of windows and threads. Times are nanoseconds of Clock::now().
class WindowTimers {
public:
    // Starts a timer, or starts one that runs anew. Without a window the timer gets an identifier of its own,
    // unless `id` names one that runs. Gives the identifier.
    UINT_PTR set(DWORD thread, HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure,
                 std::int64_t now);
    bool kill(DWORD thread, HWND window, UINT_PTR id);
    void killAll(HWND window);
    // The thread's timer that has been due for longest; with `remove` it starts its next period.
    bool takeDue(DWORD thread, std::int64_t now, const std::function<bool(const MSG&)>& wanted, bool remove,
                 MSG& message);
    // When the next timer of the thread is due.
    std::optional<std::int64_t> nextDue(DWORD thread) const;
    std::size_t count() const { return timers_.size(); }

private:
    struct Timer {
        DWORD thread;
        HWND window;
        UINT_PTR id;
        std::int64_t period;
        std::int64_t due;
        TIMERPROC procedure;
    };

    Timer* find(DWORD thread, HWND window, UINT_PTR id);

    std::vector<Timer> timers_;
    UINT_PTR lastId_ = 0;
};

}  // namespace winlayer
