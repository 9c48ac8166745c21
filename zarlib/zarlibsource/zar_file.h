#pragma once
#include <algorithm>
#include <cstdint>

#include "diskio.h"

namespace zar {

// Size of an open file in bytes, as of its last open or write.
inline std::uint64_t SizeOf(const UTILS::DiskIO& file) {
    return std::uint64_t{file.GetFileSizeHigh()} << 32 | file.GetFileSize();
}

// Moves a file's pointer to `place`, in bytes from the start. The system treats a 32-bit distance as signed,
// so a position from 2 to 4 GiB takes several moves. Throws DiskIoException type 5.
inline void MoveTo(const UTILS::DiskIO& file, std::uint64_t place) {
    constexpr std::uint64_t longest = 0x7FFFFFFF;
    LARGE_INTEGER step{};
    step.QuadPart = static_cast<LONGLONG>(place >> 32 != 0 ? place : std::min(place, longest));
    file.SetFilePointer(step, FILE_BEGIN);
    while ((place -= static_cast<std::uint64_t>(step.QuadPart)) != 0) {
        step.QuadPart = static_cast<LONGLONG>(std::min(place, longest));
        file.SetFilePointer(step, FILE_CURRENT);
    }
}

}  // namespace zar
