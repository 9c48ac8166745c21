#include "host/qxpm/classes.h"

#include "host/qxpm/manager.h"
#include "host/qxpm/property_store.h"
#include "host/qxpm/rich_text.h"

namespace qxpm {

Maker makerOf(REFCLSID classId) {
    if (IsEqualGUID(classId, CLSID_HostPropertyStore)) return makeObject<PropertyStore>;
    if (IsEqualGUID(classId, CLSID_HostManager)) return makeObject<Manager>;
    if (IsEqualGUID(classId, CLSID_HostRichText)) return makeObject<RichText>;
    return nullptr;
}

HRESULT create(REFCLSID classId, REFIID interfaceId, void** object) {
    *object = nullptr;
    const Maker maker = makerOf(classId);
    return maker ? maker(interfaceId, object) : CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace qxpm
