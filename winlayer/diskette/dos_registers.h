#pragma once
#include <cstddef>
#include <span>

#include "winlayer/diskette/little_endian.h"

namespace winlayer {

// The register block of an MS-DOS service.
struct DosRegisters {
    static constexpr std::size_t size = 28;
    static constexpr DWORD carry = 1;

    DWORD ebx = 0;
    DWORD edx = 0;
    DWORD ecx = 0;
    DWORD eax = 0;
    DWORD edi = 0;
    DWORD esi = 0;
    DWORD flags = 0;

    static DosRegisters load(std::span<const std::byte> block) {
        return {get32(block, 0),  get32(block, 4),  get32(block, 8), get32(block, 12),
                get32(block, 16), get32(block, 20), get32(block, 24)};
    }
    void store(std::span<std::byte> block) const {
        const DWORD values[] = {ebx, edx, ecx, eax, edi, esi, flags};
        for (std::size_t i = 0; i < std::size(values); ++i) {
            put32(block, i * 4, values[i]);
        }
    }

    BYTE ah() const { return HIBYTE(LOWORD(eax)); }
    BYTE al() const { return LOBYTE(LOWORD(eax)); }
    void setAx(DWORD value) { eax = (eax & 0xFFFF0000) | (value & 0xFFFF); }
    // The service's result: carry clear and AX, or carry set and the error code in AX.
    void succeed(DWORD ax) {
        setAx(ax);
        flags &= ~carry;
    }
    void fail(DWORD ax) {
        setAx(ax);
        flags |= carry;
    }
};

}  // namespace winlayer
