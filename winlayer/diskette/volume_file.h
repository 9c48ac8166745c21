#pragma once
#include <memory>

#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/diskette/fat12_volume.h"

namespace winlayer {

// A file open on a diskette. It keeps the drive alive, and its volume shows whether the diskette has been
// changed.
class VolumeFile : public OpenFile {
public:
    VolumeFile(std::shared_ptr<DisketteDrive> drive, std::shared_ptr<Fat12Volume> volume,
               const OpenFiles::Open& opened);
    ~VolumeFile() override;
    VolumeFile(const VolumeFile&) = delete;
    VolumeFile& operator=(const VolumeFile&) = delete;

    Transfer read(std::uint64_t offset, std::span<std::byte> buffer) override;
    Transfer write(std::uint64_t offset, std::span<const std::byte> data) override;
    DWORD flush() override;
    DWORD size(std::uint64_t& bytes) override;
    DWORD resize(std::uint64_t bytes) override;

private:
    std::shared_ptr<DisketteDrive> drive_;
    std::shared_ptr<Fat12Volume> volume_;
    OpenFiles::Ticket ticket_;
};

}  // namespace winlayer
