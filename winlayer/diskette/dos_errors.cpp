#include "winlayer/diskette/dos_errors.h"

#include <algorithm>
#include <iterator>

namespace winlayer {
namespace {

struct Row {
    DWORD windows;
    WORD absolute;
    BYTE bios;
};

constexpr Row rows[] = {
    {ERROR_WRITE_PROTECT, 0x0300, 0x03},
    {ERROR_NOT_READY, 0x8002, 0x80},
    {ERROR_CRC, 0x1004, 0x10},
    {ERROR_SEEK, 0x4006, 0x40},
    {ERROR_UNRECOGNIZED_MEDIA, 0x0207, 0x02},  // no address mark: the driver does not know the medium
    {ERROR_UNRECOGNIZED_VOLUME, 0x0207, 0x02},
    {ERROR_SECTOR_NOT_FOUND, 0x0408, 0x04},
    {ERROR_WRITE_FAULT, 0x200A, 0x20},
    {ERROR_READ_FAULT, 0x200B, 0x20},
    {ERROR_INVALID_DRIVE, 0x0101, 0x01},
};
constexpr Row general{ERROR_GEN_FAILURE, 0x200C, 0x20};

const Row& find(DWORD windowsError) {
    const auto* const row = std::find_if(std::begin(rows), std::end(rows),
                                         [&](const Row& r) { return r.windows == windowsError; });
    return row == std::end(rows) ? general : *row;
}

}  // namespace

WORD absoluteDiskError(DWORD windowsError) {
    return find(windowsError).absolute;
}

BYTE biosDiskError(DWORD windowsError) {
    return find(windowsError).bios;
}

}  // namespace winlayer
