#pragma once
#include <cstddef>
#include <span>

#include "winlayer/include/windows.h"

// Fields of on-disk structures and register blocks. `at` is in bytes; the entire field must lie in the block.

namespace winlayer {

inline BYTE get8(std::span<const std::byte> block, std::size_t at) {
    return std::to_integer<BYTE>(block[at]);
}
inline WORD get16(std::span<const std::byte> block, std::size_t at) {
    return static_cast<WORD>(get8(block, at) | get8(block, at + 1) << 8);
}
inline DWORD get32(std::span<const std::byte> block, std::size_t at) {
    return get16(block, at) | static_cast<DWORD>(get16(block, at + 2)) << 16;
}
inline void put8(std::span<std::byte> block, std::size_t at, DWORD value) {
    block[at] = static_cast<std::byte>(value);
}
inline void put16(std::span<std::byte> block, std::size_t at, DWORD value) {
    put8(block, at, value);
    put8(block, at + 1, value >> 8);
}
inline void put32(std::span<std::byte> block, std::size_t at, DWORD value) {
    put16(block, at, value);
    put16(block, at + 2, value >> 16);
}

}  // namespace winlayer
