#pragma once
#include <windows.h>

// A host module for tests, QXPM.DLL, built in several makes that differ in what they export. What it is told
// to do and what was asked of it lies in one state, which the module's export "TestHostState" gives.
struct TestHost {
    HANDLE readyEvent = nullptr;    // given to the broker
    HRESULT eventResult = S_OK;     // of DllGetEventHandle
    HRESULT createResult = S_OK;    // of DllCreateObject; a failure makes nothing
    HRESULT openResult = S_OK;      // of the property store
    HRESULT shutdownResult = S_OK;  // of the manager
    LONG liveObjects = 0;
    char log[4096] = {};  // what was asked, one call a line
};

using TestHostStateFunction = TestHost*(WINAPI*)();
