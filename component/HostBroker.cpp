#include "HostBroker.h"

#include <algorithm>
#include <cstring>

#include "host_objects.h"

HostBroker hostBroker;

namespace {

constexpr char hostModuleName[] = "QXPM.DLL";

using GetEventHandle = HRESULT(WINAPI*)(HANDLE*);
using CreateObjectFunction = HRESULT(WINAPI*)(const GUID*, const GUID*, void**);
using GetClassObject = HRESULT(WINAPI*)(const GUID&, const GUID&, void**);
using CanUnloadNow = HRESULT(WINAPI*)();

template <class Function>
Function lookUp(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

void locateSelf() {}

}  // namespace

void HostBroker::Start() {
    hostModule_ = nullptr;
    readyEvent_ = nullptr;
    moduleDir_[0] = '\0';
    // The module handle is looked up by address, which is right however the code was linked.
    MEMORY_BASIC_INFORMATION region{};
    ::VirtualQuery(reinterpret_cast<void*>(&locateSelf), &region, sizeof region);
    selfModule_ = static_cast<HMODULE>(region.AllocationBase);
    ::GetModuleFileNameA(selfModule_, moduleDir_, sizeof moduleDir_);
    moduleDir_[sizeof moduleDir_ - 1] = '\0';
    if (char* slash = std::strrchr(moduleDir_, '\\')) {
        *slash = '\0';
    }
}

void HostBroker::Stop() {
    if (hostModule_ == nullptr || !IsReady()) {
        return;
    }
    void* object = nullptr;
    if (SUCCEEDED(CreateHostObject(CLSID_HostManager, IID_IHostManager, &object)) && object != nullptr) {
        const auto manager = static_cast<IHostManager*>(object);
        const HRESULT result = manager->Shutdown(0);
        manager->Release();
        const auto canUnload = lookUp<CanUnloadNow>(hostModule_, "DllCanUnloadNow");
        if (result == S_OK && canUnload != nullptr) {
            canUnload();
        }
    }
    ::FreeLibrary(hostModule_);
    hostModule_ = nullptr;
    readyEvent_ = nullptr;
}

bool HostBroker::IsReady() const {
    return readyEvent_ == nullptr || ::WaitForSingleObject(readyEvent_, 0) == WAIT_OBJECT_0;
}

bool HostBroker::LoadHostModule() {
    char path[MAX_PATH + sizeof hostModuleName + 1];
    const std::size_t length = std::strlen(moduleDir_);
    char* end = std::copy_n(moduleDir_, length, path);
    if (length == 0 || end[-1] != '\\') {
        *end++ = '\\';
    }
    std::copy_n(hostModuleName, sizeof hostModuleName, end);
    hostModule_ = ::LoadLibraryA(path);
    if (hostModule_ == nullptr) {
        hostModule_ = ::LoadLibraryA(hostModuleName);
    }
    return hostModule_ != nullptr;
}

bool HostBroker::EnsureHostModule() {
    if (hostModule_ != nullptr) {
        return IsReady();
    }
    if (!LoadHostModule()) {
        return false;
    }
    const auto getEventHandle = lookUp<GetEventHandle>(hostModule_, "DllGetEventHandle");
    return getEventHandle != nullptr && SUCCEEDED(getEventHandle(&readyEvent_));
}

HRESULT HostBroker::CreateHostObject(const GUID& classId, const GUID& interfaceId, void** object) {
    *object = nullptr;
    if (!EnsureHostModule()) {
        return E_FAIL;
    }
    HRESULT result = E_FAIL;
    if (const auto create = lookUp<CreateObjectFunction>(hostModule_, "DllCreateObject")) {
        result = create(&classId, &interfaceId, object);
        if (SUCCEEDED(result)) {
            return result;
        }
    }
    return CreateThroughFactory(classId, interfaceId, object, result);
}

HRESULT HostBroker::CreateThroughFactory(const GUID& classId, const GUID& interfaceId, void** object,
                                         HRESULT soFar) const {
    const auto getClassObject = lookUp<GetClassObject>(hostModule_, "DllGetClassObject");
    void* found = nullptr;
    if (getClassObject == nullptr || FAILED(getClassObject(classId, IID_IClassFactory, &found)) ||
        found == nullptr) {
        return soFar;
    }
    const auto factory = static_cast<IClassFactory*>(found);
    const HRESULT result = factory->CreateInstance(nullptr, interfaceId, object);
    factory->Release();
    return SUCCEEDED(result) ? result : soFar;
}

HRESULT HostBroker::CreateThroughManager(const GUID& classId, IUnknown* outer, DWORD context,
                                         const GUID& interfaceId, void** object) {
    *object = nullptr;
    void* made = nullptr;
    const HRESULT creation = CreateHostObject(CLSID_HostManager, IID_IHostManager, &made);
    if (FAILED(creation) || made == nullptr) {
        return FAILED(creation) ? creation : E_FAIL;
    }
    const auto manager = static_cast<IHostManager*>(made);
    const HRESULT result = manager->CreateObject(&classId, outer, context, &interfaceId, object);
    manager->Release();
    return result;
}
