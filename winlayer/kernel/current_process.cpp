#include <unistd.h>

#include "winlayer/kernel/current_process.h"

#include "winlayer/base/gate.h"
#include "winlayer/include/processthreadsapi.h"

HANDLE WINAPI GetCurrentProcess() {
    winlayer::entered(__func__);
    return winlayer::currentProcess();
}

HANDLE WINAPI GetCurrentThread() {
    winlayer::entered(__func__);
    return winlayer::currentThread();
}

DWORD WINAPI GetCurrentThreadId() {
    winlayer::entered(__func__);
    thread_local const auto id = static_cast<DWORD>(::gettid());
    return id;
}
