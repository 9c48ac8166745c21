#include "host/qxpm/manager.h"

#include "host/qxpm/classes.h"

namespace qxpm {

HRESULT WINAPI Manager::CountObjects(DWORD* count) {
    if (!count) return E_POINTER;
    *count = liveObjects;
    return S_OK;
}

HRESULT WINAPI Manager::CreateObject(const GUID* classId, IUnknown* outer, DWORD, const GUID* interfaceId,
                                     void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!classId || !interfaceId) return E_INVALIDARG;
    if (outer) return CLASS_E_NOAGGREGATION;
    return create(*classId, *interfaceId, object);
}

HRESULT WINAPI Manager::Shutdown(int) {
    return liveObjects == 1 ? S_OK : S_FALSE;
}

}  // namespace qxpm
