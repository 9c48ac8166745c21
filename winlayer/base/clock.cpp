#include "winlayer/base/clock.h"

#include <chrono>
#include <thread>

namespace winlayer {
namespace {

std::int64_t hostTime() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count();
}

}  // namespace

std::int64_t Clock::now() const {
    return stopped() ? frozen_.load() : hostTime();
}

void Clock::stop() {
    if (!stopped()) {
        frozen_ = hostTime();
        stopped_ = true;
    }
}

void Clock::advance(std::int64_t nanoseconds) {
    stop();
    frozen_ += nanoseconds;
}

bool Clock::stopped() const {
    return stopped_;
}

void Clock::sleep(std::int64_t nanoseconds) {
    if (stopped()) {
        frozen_ += nanoseconds;
    } else {
        std::this_thread::sleep_for(std::chrono::nanoseconds(nanoseconds));
    }
}

}  // namespace winlayer
