#include "winlayer/windows/window_timers.h"

#include <algorithm>

namespace winlayer {

WindowTimers::Timer* WindowTimers::find(DWORD thread, HWND window, UINT_PTR id) {
    const auto found = std::find_if(timers_.begin(), timers_.end(), [&](const Timer& timer) {
        return timer.thread == thread && timer.window == window && timer.id == id;
    });
    return found != timers_.end() ? &*found : nullptr;
}

UINT_PTR WindowTimers::set(DWORD thread, HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure,
                           std::int64_t now) {
    Timer* timer = find(thread, window, id);
    if (timer == nullptr) {
        if (window == nullptr) {
            id = ++lastId_;
        }
        timer = &timers_.emplace_back();
    }
    const std::int64_t period = std::int64_t{std::max(milliseconds, USER_TIMER_MINIMUM)} * 1'000'000;
    *timer = {thread, window, id, period, now + period, procedure};
    return id;
}

bool WindowTimers::kill(DWORD thread, HWND window, UINT_PTR id) {
    return std::erase_if(timers_, [&](const Timer& timer) {
               return timer.thread == thread && timer.window == window && timer.id == id;
           }) != 0;
}

void WindowTimers::killAll(HWND window) {
    std::erase_if(timers_, [&](const Timer& timer) { return timer.window == window; });
}

bool WindowTimers::takeDue(DWORD thread, std::int64_t now, const std::function<bool(const MSG&)>& wanted,
                           bool remove, MSG& message) {
    Timer* first = nullptr;
    for (Timer& timer : timers_) {
        const MSG candidate{timer.window,   WM_TIMER, timer.id, reinterpret_cast<LPARAM>(timer.procedure),
                            GetTickCount(), {}};
        if (timer.thread == thread && timer.due <= now && (first == nullptr || timer.due < first->due) &&
            wanted(candidate)) {
            first = &timer;
            message = candidate;
        }
    }
    // A period that was missed altogether is not made up for.
    if (first != nullptr && remove) {
        first->due = now + first->period;
    }
    return first != nullptr;
}

std::optional<std::int64_t> WindowTimers::nextDue(DWORD thread) const {
    std::optional<std::int64_t> next;
    for (const Timer& timer : timers_) {
        if (timer.thread == thread && (!next || timer.due < *next)) {
            next = timer.due;
        }
    }
    return next;
}

}  // namespace winlayer
