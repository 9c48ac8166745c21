#pragma once
#include <memory>

#include "winlayer/diskette/diskette_drive.h"

namespace winlayer {

// The sectors below the file system, as \\.\A: opens them. Transfers must start and end at sector boundaries
// (ERROR_INVALID_PARAMETER); a read stops at the end of the medium, a write beyond it writes nothing
// (ERROR_SECTOR_NOT_FOUND). It has no file size to read or change.
class RawDevice : public OpenFile {
public:
    RawDevice(std::shared_ptr<DisketteDrive> drive, DWORD access);

    Transfer read(std::uint64_t offset, std::span<std::byte> buffer) override;
    Transfer write(std::uint64_t offset, std::span<const std::byte> data) override;
    DWORD flush() override;
    DWORD size(std::uint64_t& bytes) override;
    DWORD resize(std::uint64_t bytes) override;
    // IOCTL_DISK_GET_MEDIA_TYPES: the media that the drive supports, ERROR_MORE_DATA if not all fit.
    // IOCTL_DISK_GET_DRIVE_GEOMETRY: the current medium. Any other code: ERROR_INVALID_FUNCTION.
    DWORD control(DWORD code, std::span<const std::byte> in, std::span<std::byte> out,
                  DWORD& returned) override;

private:
    std::shared_ptr<DisketteDrive> drive_;
    DWORD access_;
};

}  // namespace winlayer
