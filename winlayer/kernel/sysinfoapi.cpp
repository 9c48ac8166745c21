#include "winlayer/include/sysinfoapi.h"

#include "winlayer/machine.h"

DWORD WINAPI GetTickCount() {
    winlayer::entered(__func__);
    return static_cast<DWORD>(winlayer::Machine::current().clock.now() / 1'000'000);
}
