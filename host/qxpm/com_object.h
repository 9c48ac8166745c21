#pragma once
#include <windows.h>
// Not part of <windows.h>.
#include <unknwn.h>

#include <atomic>
#include <new>

namespace qxpm {

// Objects of this module that are alive.
inline std::atomic<DWORD> liveObjects{0};

// An object with one reference at first, known by IUnknown and one interface of its own; it deletes itself
// with the last reference. Make it with makeObject. `Derived` is final.
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

// A new object by its interface; what fails leaves null.
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
