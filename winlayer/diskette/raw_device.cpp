#include "winlayer/diskette/raw_device.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace winlayer {
namespace {

bool isAligned(std::uint64_t offset, std::size_t bytes) {
    return offset % sectorSize == 0 && bytes % sectorSize == 0;
}

DISK_GEOMETRY windowsGeometry(const DiskGeometry& geometry) {
    DISK_GEOMETRY described{};
    described.Cylinders.QuadPart = geometry.cylinders;
    described.MediaType = geometry.mediaType;
    described.TracksPerCylinder = geometry.heads;
    described.SectorsPerTrack = geometry.sectorsPerTrack;
    described.BytesPerSector = sectorSize;
    return described;
}

// As many complete records as fit.
DWORD answer(const std::vector<DiskGeometry>& geometries, std::span<std::byte> out, DWORD& returned) {
    const std::size_t count = std::min(geometries.size(), out.size() / sizeof(DISK_GEOMETRY));
    for (std::size_t i = 0; i < count; ++i) {
        const DISK_GEOMETRY described = windowsGeometry(geometries[i]);
        std::memcpy(out.data() + i * sizeof described, &described, sizeof described);
    }
    returned = static_cast<DWORD>(count * sizeof(DISK_GEOMETRY));
    if (count == geometries.size()) {
        return NO_ERROR;
    }
    return count == 0 ? ERROR_INSUFFICIENT_BUFFER : ERROR_MORE_DATA;
}

}  // namespace

RawDevice::RawDevice(std::shared_ptr<DisketteDrive> drive, DWORD access)
    : drive_(std::move(drive)), access_(access) {}

Transfer RawDevice::read(std::uint64_t offset, std::span<std::byte> buffer) {
    if ((access_ & GENERIC_READ) == 0) {
        return {0, ERROR_ACCESS_DENIED};
    }
    if (!isAligned(offset, buffer.size())) {
        return {0, ERROR_INVALID_PARAMETER};
    }
    DiskGeometry medium;
    const DWORD obstacle = drive_->mediumGeometry(medium);
    if (obstacle != NO_ERROR) {
        return {0, obstacle};
    }
    const std::uint64_t end = std::uint64_t{medium.sectors()} * sectorSize;
    const std::uint64_t count = std::min<std::uint64_t>(buffer.size(), end - std::min(offset, end));
    const auto first = static_cast<DWORD>(std::min(offset, end) / sectorSize);
    const DWORD error = drive_->readSectors(first, buffer.first(static_cast<std::size_t>(count)));
    return {error == NO_ERROR ? static_cast<DWORD>(count) : 0, error};
}

Transfer RawDevice::write(std::uint64_t offset, std::span<const std::byte> data) {
    if ((access_ & GENERIC_WRITE) == 0) {
        return {0, ERROR_ACCESS_DENIED};
    }
    if (!isAligned(offset, data.size())) {
        return {0, ERROR_INVALID_PARAMETER};
    }
    const std::uint64_t first = std::min<std::uint64_t>(offset / sectorSize, ~DWORD{0});
    const DWORD error = drive_->writeSectors(static_cast<DWORD>(first), data);
    return {error == NO_ERROR ? static_cast<DWORD>(data.size()) : 0, error};
}

DWORD RawDevice::flush() {
    return drive_->flush();
}

DWORD RawDevice::size(std::uint64_t&) {
    return ERROR_INVALID_PARAMETER;
}

DWORD RawDevice::resize(std::uint64_t) {
    return ERROR_INVALID_PARAMETER;
}

DWORD RawDevice::control(DWORD code, std::span<const std::byte>, std::span<std::byte> out, DWORD& returned) {
    returned = 0;
    if (code == IOCTL_DISK_GET_MEDIA_TYPES) {
        return answer(drive_->supportedGeometries(), out, returned);
    }
    if (code == IOCTL_DISK_GET_DRIVE_GEOMETRY) {
        DiskGeometry medium;
        const DWORD error = drive_->mediumGeometry(medium);
        return error == NO_ERROR ? answer({medium}, out, returned) : error;
    }
    return ERROR_INVALID_FUNCTION;
}

}  // namespace winlayer
