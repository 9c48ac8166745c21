#pragma once
#include <atomic>
#include <cstdint>

namespace winlayer {

// The machine's clock. It follows the host's until a test stops it; after that it moves only through
// advance() and Sleep, which then returns at once.
class Clock {
public:
    // The current machine's.
    static Clock& current();

    // Nanoseconds since an arbitrary start.
    std::int64_t now() const;
    void stop();
    void advance(std::int64_t nanoseconds);
    bool stopped() const;
    // Implements Sleep.
    void sleep(std::int64_t nanoseconds);
    // Whether there is a high-resolution performance counter.
    bool hasPerformanceCounter = true;

private:
    std::atomic<bool> stopped_{false};
    std::atomic<std::int64_t> frozen_{0};
};

}  // namespace winlayer
