#include "winlayer/include/profileapi.h"

#include "winlayer/base/clock.h"
#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"

namespace {

constexpr LONGLONG ticksPerSecond = 10'000'000;
constexpr LONGLONG nanosecondsPerTick = 1'000'000'000 / ticksPerSecond;

BOOL report(LARGE_INTEGER* target, LONGLONG value) {
    if (!winlayer::Clock::current().hasPerformanceCounter) {
        target->QuadPart = 0;
        return winlayer::failed(ERROR_NOT_SUPPORTED);
    }
    target->QuadPart = value;
    return TRUE;
}

}  // namespace

BOOL WINAPI QueryPerformanceCounter(LARGE_INTEGER* count) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return report(count, winlayer::Clock::current().now() / nanosecondsPerTick);
}

BOOL WINAPI QueryPerformanceFrequency(LARGE_INTEGER* frequency) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return report(frequency, ticksPerSecond);
}
