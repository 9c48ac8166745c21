#include <windows.h>
// Not part of <windows.h>.
#include <unknwn.h>

#include "host/qxpm/class_factory.h"

namespace {

// Signalled while the module accepts requests.
HANDLE readyEvent = nullptr;

}  // namespace

// Returns the event, which the module owns. Once a host resets it, the component makes no more requests.
extern "C" HRESULT WINAPI DllGetEventHandle(HANDLE* event) {
    if (!event) return E_POINTER;
    *event = readyEvent;
    return readyEvent ? S_OK : E_FAIL;
}

extern "C" HRESULT WINAPI DllCreateObject(const GUID* classId, const GUID* interfaceId, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!classId || !interfaceId) return E_INVALIDARG;
    return qxpm::create(*classId, *interfaceId, object);
}

extern "C" HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    const qxpm::Maker maker = qxpm::makerOf(classId);
    if (!maker) return CLASS_E_CLASSNOTAVAILABLE;
    auto* const factory = new (std::nothrow) qxpm::ClassFactory(maker);
    if (!factory) return E_OUTOFMEMORY;
    const HRESULT result = factory->QueryInterface(interfaceId, object);
    factory->Release();
    return result;
}

extern "C" HRESULT WINAPI DllCanUnloadNow() {
    return qxpm::liveObjects == 0 ? S_OK : S_FALSE;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        readyEvent = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    } else if (reason == DLL_PROCESS_DETACH && readyEvent) {
        CloseHandle(readyEvent);
        readyEvent = nullptr;
    }
    return TRUE;
}
