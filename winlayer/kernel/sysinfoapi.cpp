#include "winlayer/include/sysinfoapi.h"

#include "winlayer/base/clock.h"
#include "winlayer/base/gate.h"

DWORD WINAPI GetTickCount() {
    winlayer::entered(__func__);
    return static_cast<DWORD>(winlayer::Clock::current().now() / 1'000'000);
}
