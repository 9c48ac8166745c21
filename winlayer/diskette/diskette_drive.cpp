#include "winlayer/diskette/diskette_drive.h"

#include <utility>

#include "winlayer/diskette/disk_error.h"
#include "winlayer/diskette/fat12_volume.h"
#include "winlayer/diskette/raw_device.h"
#include "winlayer/diskette/volume_file.h"

namespace winlayer {
namespace {

template <class Work>
DWORD resultOf(Work work) {
    try {
        work();
        return NO_ERROR;
    } catch (const DiskError& error) {
        return error.code;
    }
}

// Checks a request to open an existing file.
DWORD admit(const FoundEntry& found, const OpenRequest& request) {
    const bool replacing = request.disposition == CREATE_ALWAYS || request.disposition == TRUNCATE_EXISTING;
    if (request.disposition == CREATE_NEW) {
        return ERROR_FILE_EXISTS;
    }
    if (found.entry.isDirectory()) {
        return ERROR_ACCESS_DENIED;
    }
    const bool changing = replacing || request.deleteOnClose || (request.access & GENERIC_WRITE) != 0;
    if (changing && (found.entry.attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    // A hidden or system file is overwritten only if the request has that attribute too.
    const DWORD guarded = found.entry.attributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    const bool unlike = request.disposition == CREATE_ALWAYS && (guarded & ~request.attributes) != 0;
    return unlike ? ERROR_ACCESS_DENIED : NO_ERROR;
}

}  // namespace

std::shared_ptr<DisketteDrive> DisketteDrive::make(std::unique_ptr<SectorStore> medium) {
    auto drive = std::make_shared<DisketteDrive>(Private());
    if (medium) {
        drive->insert(std::move(medium));
    }
    return drive;
}

DisketteDrive::DisketteDrive(Private) : clock_([] { return std::time(nullptr); }) {}

DisketteDrive::~DisketteDrive() = default;

void DisketteDrive::insert(std::unique_ptr<SectorStore> medium) {
    const std::lock_guard lock(mutex_);
    volume_.reset();
    medium_ = std::make_unique<ConditionedStore>(std::move(medium), state_);
}

std::unique_ptr<SectorStore> DisketteDrive::eject() {
    const std::lock_guard lock(mutex_);
    volume_.reset();
    const auto ejected = std::move(medium_);
    return ejected ? ejected->take() : nullptr;
}

DisketteState DisketteDrive::state() const {
    const std::lock_guard lock(mutex_);
    return state_;
}

// Forgets what is cached of the medium, so that faults appear with the next read.
void DisketteDrive::setState(const DisketteState& state) {
    const std::lock_guard lock(mutex_);
    state_ = state;
    if (volume_) {
        volume_->forgetAll();
    }
}

void DisketteDrive::setClock(std::function<std::time_t()> clock) {
    const std::lock_guard lock(mutex_);
    clock_ = std::move(clock);
}

DWORD DisketteDrive::flush() {
    const std::lock_guard lock(mutex_);
    return medium_ ? medium_->settle() : ERROR_NOT_READY;
}

DWORD DisketteDrive::settle() {
    const DWORD error = flush();
    const std::lock_guard lock(mutex_);
    if (volume_) {
        volume_->forgetAll();
        notice(0, 1);
    }
    return error;
}

// Call after sectors were written below the volume or may have changed; for sector 0 the parameters are read
// again.
void DisketteDrive::notice(DWORD first, std::size_t count) {
    bool same = false;
    resultOf([&] { same = volume_->notice(first, count); });
    if (!same) {
        volume_.reset();
    }
}

DWORD DisketteDrive::obstacle() const {
    return medium_ ? state_.obstacle(medium_->sectors()) : ERROR_NOT_READY;
}

std::vector<DiskGeometry> DisketteDrive::supportedGeometries() const {
    const std::lock_guard lock(mutex_);
    return state_.lowDensityDrive ? std::vector{geometry720} : std::vector{geometry1440, geometry720};
}

DWORD DisketteDrive::mediumGeometry(DiskGeometry& geometry) const {
    const std::lock_guard lock(mutex_);
    const DWORD error = obstacle();
    if (error == NO_ERROR) {
        geometry = medium_->sectors() == sectors720 ? geometry720 : geometry1440;
    }
    return error;
}

bool DisketteDrive::writeProtected() const {
    const std::lock_guard lock(mutex_);
    return medium_ && medium_->writeProtected();
}

DWORD DisketteDrive::layout(Fat12Layout& layout) {
    return onVolume([&](Fat12Volume& volume) { layout = volume.layout(); });
}

DWORD DisketteDrive::readSectors(DWORD first, std::span<std::byte> buffer) {
    const std::lock_guard lock(mutex_);
    const DWORD error = obstacle();
    return error == NO_ERROR ? medium_->read(first, buffer) : error;
}

DWORD DisketteDrive::writeSectors(DWORD first, std::span<const std::byte> data) {
    const std::lock_guard lock(mutex_);
    DWORD error = obstacle();
    if (error != NO_ERROR) {
        return error;
    }
    error = medium_->write(first, data);
    if (volume_) {
        notice(first, data.size() / sectorSize);
    }
    return error;
}

Fat12Volume& DisketteDrive::mounted() {
    require(obstacle());
    if (!volume_) {
        volume_ = std::make_shared<Fat12Volume>(*medium_, clock_);
    }
    return *volume_;
}

DWORD DisketteDrive::onVolume(const VolumeWork& work) {
    const std::lock_guard lock(mutex_);
    return resultOf([&] { work(mounted()); });
}

DWORD DisketteDrive::onVolume(const std::shared_ptr<Fat12Volume>& opened, const VolumeWork& work) {
    const std::lock_guard lock(mutex_);
    return resultOf([&] {
        require(obstacle());
        require(opened == volume_ ? NO_ERROR : ERROR_FILE_INVALID);
        work(*opened);
    });
}

void DisketteDrive::underLock(const std::function<void()>& work) {
    const std::lock_guard lock(mutex_);
    work();
}

DWORD DisketteDrive::open(const std::string& path, const OpenRequest& request,
                          std::unique_ptr<OpenFile>& file, bool& existed) {
    file.reset();  // outside the lock, which the destructor of a file of this drive takes
    return onVolume([&](Fat12Volume& volume) {
        auto found = volume.find(path);
        existed = found.has_value();
        if (!found && (request.disposition == OPEN_EXISTING || request.disposition == TRUNCATE_EXISTING)) {
            throw DiskError{ERROR_FILE_NOT_FOUND};
        }
        if ((request.access & GENERIC_WRITE) != 0 && medium_->writeProtected()) {
            throw DiskError{ERROR_WRITE_PROTECT};
        }
        if (!found) {
            found = volume.createFile(path, request.attributes);
        } else {
            require(admit(*found, request));
        }
        const OpenFiles::Open opened{found->place, request.access, request.sharing};
        require(volume.openFiles().check(opened));
        if (existed && request.disposition == CREATE_ALWAYS) {
            volume.replaceFile(found->place, request.attributes);
        } else if (existed && request.disposition == TRUNCATE_EXISTING) {
            volume.replaceFile(found->place, found->entry.attributes);
        }
        file = std::make_unique<VolumeFile>(shared_from_this(), volume_, opened);
    });
}

DWORD DisketteDrive::facts(const std::string& path, FileFacts& facts) {
    // Most paths are checked because they may be absent, which is not worth an exception.
    bool found = true;
    const DWORD error = onVolume([&](Fat12Volume& volume) {
        if (auto known = volume.facts(path)) {
            facts = std::move(*known);
        } else {
            found = false;
        }
    });
    return found ? error : ERROR_FILE_NOT_FOUND;
}

DWORD DisketteDrive::list(const std::string& directory, std::vector<FileFacts>& entries) {
    return onVolume([&](Fat12Volume& volume) { entries = volume.list(directory); });
}

DWORD DisketteDrive::setAttributes(const std::string& path, DWORD attributes) {
    return onVolume([&](Fat12Volume& volume) { volume.setAttributes(path, attributes); });
}

DWORD DisketteDrive::removeFile(const std::string& path) {
    return onVolume([&](Fat12Volume& volume) { volume.removeFile(path); });
}

DWORD DisketteDrive::createDirectory(const std::string& path) {
    return onVolume([&](Fat12Volume& volume) { volume.createDirectory(path); });
}

DWORD DisketteDrive::removeDirectory(const std::string& path) {
    return onVolume([&](Fat12Volume& volume) { volume.removeDirectory(path); });
}

DWORD DisketteDrive::volume(VolumeFacts& facts) {
    return onVolume([&](Fat12Volume& volume) { facts = {volume.label(), volume.serial(), "FAT"}; });
}

DWORD DisketteDrive::setLabel(const std::string& label) {
    return onVolume([&](Fat12Volume& volume) { volume.setLabel(label); });
}

DWORD DisketteDrive::openDevice(const OpenRequest& request, std::unique_ptr<OpenFile>& device) {
    if (request.disposition != OPEN_EXISTING) {
        return ERROR_FILE_EXISTS;
    }
    const std::lock_guard lock(mutex_);
    const DWORD error = request.access == 0 ? NO_ERROR : obstacle();
    if (error == NO_ERROR) {
        device = std::make_unique<RawDevice>(shared_from_this(), request.access);
    }
    return error;
}

}  // namespace winlayer
