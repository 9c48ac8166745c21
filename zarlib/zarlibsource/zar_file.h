#pragma once
#include <cstdint>

#include "diskio.h"

namespace zar {

// Size of an open file in bytes, as it was when the file was opened or last written.
inline std::uint64_t SizeOf(const UTILS::DiskIO& file) {
    return std::uint64_t{file.GetFileSizeHigh()} << 32 | file.GetFileSize();
}

// Moves a file's pointer forward from `position`, where it is, by `distance` bytes. The system takes a
// distance of 32 bits as signed and tells no position beyond 32 bits without being asked for the high half;
// so long ways are gone in several moves, and far places from the start. Throws DiskIoException type 5.
inline void MoveForward(const UTILS::DiskIO& file, std::uint64_t position, std::uint64_t distance) {
    constexpr std::uint64_t longest = 0x7FFFFFFF;
    LARGE_INTEGER step{};
    if ((position + distance) >> 32 != 0) {
        step.QuadPart = static_cast<LONGLONG>(position + distance);
        file.SetFilePointer(step, FILE_BEGIN);
        return;
    }
    do {
        step.QuadPart = static_cast<LONGLONG>(distance < longest ? distance : longest);
        file.SetFilePointer(step, FILE_CURRENT);
        distance -= static_cast<std::uint64_t>(step.QuadPart);
    } while (distance != 0);
}

}  // namespace zar
