#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/modules/modules.h"

namespace winlayer {
namespace {

// An HRSRC is the index of the resource in its module, plus one.
HRSRC asHandle(std::size_t place) {
    return reinterpret_cast<HRSRC>(place + 1);
}

const Resource* resourceOf(HMODULE module, HRSRC handle) {
    const Resource* const resource =
        winlayer::Modules::current().resourceAt(module, reinterpret_cast<std::size_t>(handle) - 1);
    if (resource == nullptr) {
        SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
    }
    return resource;
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

HRSRC WINAPI FindResourceA(HMODULE module, LPCSTR name, LPCSTR type) try {
    if (denied(__func__)) {
        return nullptr;
    }
    std::size_t place = Resources::none;
    const DWORD error =
        winlayer::Modules::current().findResource(module, ResourceId(type), ResourceId(name), place);
    return succeeded(error) ? asHandle(place) : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC handle) try {
    if (denied(__func__)) {
        return nullptr;
    }
    const Resource* const resource = resourceOf(module, handle);
    // The caller may only read the resource.
    return resource != nullptr ? const_cast<BYTE*>(resource->data.data()) : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

// Loaded data needs no further step to be accessible.
LPVOID WINAPI LockResource(HGLOBAL data) {
    return denied(__func__) ? nullptr : data;
}
