#include "winlayer/include/errhandlingapi.h"

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"

namespace {
thread_local DWORD lastError = 0;
}

// Neither enters the call hook: reading the last error must not change a record of the calls.
DWORD WINAPI GetLastError() {
    return lastError;
}

void WINAPI SetLastError(DWORD code) {
    lastError = code;
}

UINT WINAPI SetErrorMode(UINT mode) {
    winlayer::entered(__func__);
    const UINT previous = winlayer::SystemSettings::current().errorMode;
    winlayer::SystemSettings::current().errorMode = mode;
    return previous;
}
