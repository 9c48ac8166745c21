#include "state.h"

extern "C" HRESULT WINAPI DllCreateObject(const GUID* classId, const GUID* interfaceId, void** object) {
    return FAILED(state().createResult) ? state().createResult : makeObject(*classId, *interfaceId, object);
}
