#pragma once
#include "component/host_objects.h"
#include "host/qxpm/com_object.h"

namespace qxpm {

class Manager final : public ComObject<Manager, IHostManager, IID_IHostManager> {
public:
    HRESULT WINAPI CountObjects(DWORD* count) override;
    // Aggregation is not supported: `outer` must be null. `context` is not used, everything is in-process.
    HRESULT WINAPI CreateObject(const GUID* classId, IUnknown* outer, DWORD context, const GUID* interfaceId,
                                void** object) override;
    HRESULT WINAPI Shutdown(int flag) override;
};

}  // namespace qxpm
