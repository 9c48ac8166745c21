#pragma once
#include <windows.h>
// Not part of <windows.h>.
#include <unknwn.h>

#include <atomic>
#include <new>

namespace qxpm {

// The number of live objects of this module.
inline std::atomic<DWORD> liveObjects{0};

// An object that starts with one reference, supports IUnknown and one interface of its own, and deletes
// itself with the last reference. Create it with makeObject. `Derived` is final.
template <class Derived, class Interface, const GUID& InterfaceId>
class ComObject : public Interface {
public:
    ComObject() { ++liveObjects; }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (!IsEqualGUID(id, IID_IUnknown) && !IsEqualGUID(id, InterfaceId)) return E_NOINTERFACE;
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG WINAPI AddRef() override { return ++references_; }
    ULONG WINAPI Release() override {
        const ULONG left = --references_;
        if (left == 0) delete static_cast<Derived*>(this);
        return left;
    }

protected:
    ~ComObject() { --liveObjects; }

private:
    std::atomic<ULONG> references_{1};
};

// Creates an object and stores its interface in *result; null on failure.
template <class Object>
HRESULT makeObject(REFIID interfaceId, void** result) noexcept {
    Object* const object = new (std::nothrow) Object;
    if (!object) {
        *result = nullptr;
        return E_OUTOFMEMORY;
    }
    const HRESULT outcome = object->QueryInterface(interfaceId, result);
    object->Release();
    return outcome;
}

}  // namespace qxpm
