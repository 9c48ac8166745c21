#pragma once
#include <algorithm>
#include <cstdint>

#include "diskio.h"

namespace zar {

// Size of an open file in bytes, as it was when the file was opened or last written.
inline std::uint64_t SizeOf(const UTILS::DiskIO& file) {
    return std::uint64_t{file.GetFileSizeHigh()} << 32 | file.GetFileSize();
}

// Moves a file's pointer to a place, in bytes from the start. The system takes a distance of 32 bits as
// signed, so a place between 2 and 4 GiB is gone to in several moves. Throws DiskIoException type 5.
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
