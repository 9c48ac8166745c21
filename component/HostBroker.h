#pragma once
#include <windows.h>

#include <unknwn.h>

// Access to the objects of the host's module "QXPM.DLL", which is found and loaded on first use and stays
// loaded until the component's library is unloaded. The host signals with an event that it is ready; once the
// module is loaded, requests fail while the event is reset. Nothing here throws or shows anything. Thread
// rule: the host's user-interface thread, and the attaching and detaching of the library.
class HostBroker {
public:
    constexpr HostBroker() = default;
    HostBroker(const HostBroker&) = delete;
    HostBroker& operator=(const HostBroker&) = delete;

    // On attach: finds the module that contains this code, and its directory.
    void Start();
    // On detach: notifies a host that is ready and unloads its module; a module whose event is reset stays
    // loaded.
    void Stop();

    // Loads the host's module if needed. Whether that succeeded or, when loaded before, the host is ready.
    bool EnsureHostModule();
    // Creates an object of the host, by the host's own creation function, then by its class factory. Result:
    // E_FAIL when the host is not available, otherwise the result of the last attempt. The caller releases
    // the object.
    HRESULT CreateHostObject(const GUID& classId, const GUID& interfaceId, void** object);
    // The same through a manager object, which exists for this call only.
    HRESULT CreateThroughManager(const GUID& classId, IUnknown* outer, DWORD context, const GUID& interfaceId,
                                 void** object);

private:
    bool LoadHostModule();
    bool IsReady() const;
    HRESULT CreateThroughFactory(const GUID& classId, const GUID& interfaceId, void** object,
                                 HRESULT soFar) const;

    char moduleDir_[MAX_PATH] = {};  // no trailing backslash
    HMODULE selfModule_ = nullptr;
    HMODULE hostModule_ = nullptr;
    HANDLE readyEvent_ = nullptr;  // owned by the host
};

// The only broker of the library.
extern HostBroker hostBroker;
