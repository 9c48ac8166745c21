#include "winlayer/shell/com.h"

#include <numeric>

#include "winlayer/base/gate.h"
#include "winlayer/shell/shell_link.h"

namespace winlayer {

bool Com::addUse() {
    const std::lock_guard lock(mutex_);
    return ++uses_[std::this_thread::get_id()] == 1;
}

void Com::removeUse() {
    const std::lock_guard lock(mutex_);
    const auto used = uses_.find(std::this_thread::get_id());
    if (used != uses_.end() && --used->second == 0) {
        uses_.erase(used);
    }
}

bool Com::isReady() const {
    const std::lock_guard lock(mutex_);
    return uses_.contains(std::this_thread::get_id());
}

std::size_t Com::uses() const {
    const std::lock_guard lock(mutex_);
    return std::accumulate(uses_.begin(), uses_.end(), std::size_t{0},
                           [](std::size_t sum, const auto& use) { return sum + use.second; });
}

HRESULT Com::create(REFCLSID classId, REFIID interfaceId, void** object) {
    if (!isReady()) {
        return CO_E_NOTINITIALIZED;
    }
    if (!IsEqualCLSID(classId, CLSID_ShellLink)) {
        return REGDB_E_CLASSNOTREG;
    }
    auto* const link = new ShellLink(*this);
    const HRESULT result = link->give(interfaceId, object);
    link->Release();
    return result;
}

}  // namespace winlayer

using namespace winlayer;

HRESULT WINAPI CoInitialize(LPVOID reserved) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return HRESULT_FROM_WIN32(error);
    }
    if (reserved != nullptr) {
        return E_INVALIDARG;
    }
    return winlayer::Com::current().addUse() ? S_OK : S_FALSE;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

void WINAPI CoUninitialize() {
    entered(__func__);
    winlayer::Com::current().removeUse();
}

HRESULT WINAPI CoCreateInstance(REFCLSID classId, LPUNKNOWN outer, DWORD context, REFIID interfaceId,
                                LPVOID* object) try {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return HRESULT_FROM_WIN32(error);
    }
    if (outer != nullptr) {
        return CLASS_E_NOAGGREGATION;
    }
    return (context & CLSCTX_INPROC_SERVER) != 0
               ? winlayer::Com::current().create(classId, interfaceId, object)
               : REGDB_E_CLASSNOTREG;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}
