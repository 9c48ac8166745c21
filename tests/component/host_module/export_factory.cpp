#include <cstring>

#include "state.h"

namespace {

class Factory final : public IClassFactory {
public:
    explicit Factory(const GUID& classId) : classId_(classId) { ++state().liveObjects; }
    virtual ~Factory() { --state().liveObjects; }
    HRESULT WINAPI QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG WINAPI AddRef() override { return 2; }
    ULONG WINAPI Release() override {
        delete this;
        return 0;
    }
    HRESULT WINAPI CreateInstance(IUnknown*, REFIID interfaceId, void** object) override {
        note("factory");
        return makeObject(classId_, interfaceId, object);
    }
    HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

private:
    GUID classId_;
};

}  // namespace

// The standard functions are declared by Windows' own headers.
STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, LPVOID* object) {
    if (std::memcmp(&interfaceId, &IID_IClassFactory, sizeof interfaceId) != 0) {
        return E_NOINTERFACE;
    }
    *object = static_cast<IClassFactory*>(new Factory(classId));
    return S_OK;
}

STDAPI DllCanUnloadNow() {
    note("can unload");
    return S_OK;
}
