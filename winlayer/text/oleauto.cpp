#include "winlayer/include/oleauto.h"

#include <cstdlib>
#include <cstring>
#include <limits>

#include "winlayer/base/gate.h"

namespace winlayer {
namespace {

// The length is in the last four bytes of the prefix, whose size keeps the text aligned.
constexpr std::size_t room = alignof(std::max_align_t);

BYTE* blockOf(BSTR text) {
    return reinterpret_cast<BYTE*>(text) - room;
}

// Appends a full zero unit after the last byte.
BSTR make(const void* bytes, std::size_t length) {
    if (length > std::numeric_limits<UINT>::max() - room - sizeof(OLECHAR)) {
        return nullptr;
    }
    auto* const block = static_cast<BYTE*>(std::calloc(room + length + sizeof(OLECHAR), 1));
    if (block == nullptr) {
        return nullptr;
    }
    const auto stated = static_cast<DWORD>(length);
    std::memcpy(block + room - sizeof stated, &stated, sizeof stated);
    if (bytes != nullptr && length > 0) {
        std::memcpy(block + room, bytes, length);
    }
    return reinterpret_cast<BSTR>(block + room);
}

UINT lengthOf(BSTR text) {
    DWORD length = 0;
    if (text != nullptr) {
        std::memcpy(&length, reinterpret_cast<const BYTE*>(text) - sizeof length, sizeof length);
    }
    return length;
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

BSTR WINAPI SysAllocString(const OLECHAR* text) {
    if (denied(__func__) || text == nullptr) {
        return nullptr;
    }
    std::size_t units = 0;
    while (text[units] != 0) {
        ++units;
    }
    return make(text, units * sizeof(OLECHAR));
}

BSTR WINAPI SysAllocStringByteLen(LPCSTR bytes, UINT length) {
    return denied(__func__) ? nullptr : make(bytes, length);
}

void WINAPI SysFreeString(BSTR text) {
    entered(__func__);
    if (text != nullptr) {
        std::free(blockOf(text));
    }
}

UINT WINAPI SysStringLen(BSTR text) {
    entered(__func__);
    return lengthOf(text) / static_cast<UINT>(sizeof(OLECHAR));
}
