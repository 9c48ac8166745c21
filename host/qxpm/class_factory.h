#pragma once
#include "host/qxpm/classes.h"
#include "host/qxpm/com_object.h"

namespace qxpm {

class ClassFactory final : public ComObject<ClassFactory, IClassFactory, IID_IClassFactory> {
public:
    explicit ClassFactory(Maker maker) : maker_(maker) {}

    HRESULT WINAPI CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        return outer ? CLASS_E_NOAGGREGATION : maker_(interfaceId, object);
    }
    HRESULT WINAPI LockServer(BOOL lock) override {
        liveObjects += lock ? 1u : ~0u;
        return S_OK;
    }

private:
    Maker maker_;
};

}  // namespace qxpm
