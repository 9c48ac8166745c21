#pragma once
#include <windows.h>

#include <unknwn.h>

// The way to the objects of the host's module "QXPM.DLL", which is found and loaded on first use and stays
// loaded until the component's library goes. The host says with an event that it is ready; while that is
// reset, every request fails. Nothing here throws or shows anything. Thread rule: the host's user-interface
// thread, and the attaching and detaching of the library.
class HostBroker {
public:
    constexpr HostBroker() = default;
    HostBroker(const HostBroker&) = delete;
    HostBroker& operator=(const HostBroker&) = delete;

    // The library is attached: finds the module that this code lies in, and its directory.
    void Start();
    // The library is detached: tells a host that is ready, and unloads its module; a module whose event is
    // reset stays loaded.
    void Stop();

    // Whether the host's module is loaded, or could be, and the host is ready.
    bool EnsureHostModule();
    // Makes an object of the host. Result: E_FAIL when the host is not there, else what the host's last
    // attempt gave: its own creation function is asked first, then the class factory. The caller releases the
    // object.
    HRESULT CreateHostObject(const GUID& classId, const GUID& interfaceId, void** object);
    // The same through a manager object, which lives for this one call.
    HRESULT CreateThroughManager(const GUID& classId, IUnknown* outer, DWORD context, const GUID& interfaceId,
                                 void** object);

private:
    bool LoadHostModule();
    bool IsReady() const;
    HRESULT CreateThroughFactory(const GUID& classId, const GUID& interfaceId, void** object,
                                 HRESULT soFar) const;

    char moduleDir_[MAX_PATH] = {};  // without a backslash at its end
    HMODULE selfModule_ = nullptr;
    HMODULE hostModule_ = nullptr;
    HANDLE readyEvent_ = nullptr;  // the host's own
};

// The library's one broker.
extern HostBroker hostBroker;
