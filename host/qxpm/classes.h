#pragma once
#include <windows.h>
// Not part of <windows.h>.
#include <unknwn.h>

namespace qxpm {

// Creates an object of one of the module's classes.
using Maker = HRESULT (*)(REFIID interfaceId, void** object) noexcept;

// Null for a class that the module does not have.
Maker makerOf(REFCLSID classId);
// CLASS_E_CLASSNOTAVAILABLE, and null, for a class that the module does not have.
HRESULT create(REFCLSID classId, REFIID interfaceId, void** object);

}  // namespace qxpm
