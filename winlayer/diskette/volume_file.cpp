#include "winlayer/diskette/volume_file.h"

#include <utility>

namespace winlayer {

VolumeFile::VolumeFile(std::shared_ptr<DisketteDrive> drive, std::shared_ptr<Fat12Volume> volume,
                       const OpenFiles::Open& opened)
    : drive_(std::move(drive)), volume_(std::move(volume)), ticket_(volume_->openFiles().enter(opened)) {}

VolumeFile::~VolumeFile() {
    drive_->underLock([this] { volume_->openFiles().leave(ticket_); });
}

Transfer VolumeFile::read(std::uint64_t offset, std::span<std::byte> buffer) {
    if ((ticket_->access & GENERIC_READ) == 0) {
        return {0, ERROR_ACCESS_DENIED};
    }
    Transfer done;
    done.error = drive_->onVolume(
        volume_, [&](Fat12Volume& volume) { done.count = volume.read(ticket_->place, offset, buffer); });
    return done;
}

Transfer VolumeFile::write(std::uint64_t offset, std::span<const std::byte> data) {
    if ((ticket_->access & GENERIC_WRITE) == 0) {
        return {0, ERROR_ACCESS_DENIED};
    }
    Transfer done;
    done.error = drive_->onVolume(
        volume_, [&](Fat12Volume& volume) { done.count = volume.write(ticket_->place, offset, data); });
    if (done.error == NO_ERROR && done.count < data.size()) {
        done.error = ERROR_DISK_FULL;
    }
    return done;
}

// Writes have gone to the store already; this syncs it.
DWORD VolumeFile::flush() {
    return drive_->flush();
}

DWORD VolumeFile::size(std::uint64_t& bytes) {
    return drive_->onVolume(volume_, [&](Fat12Volume& volume) { bytes = volume.entry(ticket_->place).size; });
}

DWORD VolumeFile::resize(std::uint64_t bytes) {
    if ((ticket_->access & GENERIC_WRITE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    return drive_->onVolume(volume_, [&](Fat12Volume& volume) { volume.resize(ticket_->place, bytes); });
}

}  // namespace winlayer
