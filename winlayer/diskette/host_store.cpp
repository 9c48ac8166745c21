#include "winlayer/diskette/host_store.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

#include "winlayer/base/host_errors.h"

namespace winlayer {
namespace {

class HostStore : public SectorStore {
public:
    HostStore(int descriptor, bool writeProtected) : descriptor_(descriptor), protected_(writeProtected) {}
    ~HostStore() override { ::close(descriptor_); }
    HostStore(const HostStore&) = delete;
    HostStore& operator=(const HostStore&) = delete;

    int descriptor() const { return descriptor_; }
    void setSectors(DWORD sectors) { sectors_ = sectors; }
    void setWriteProtected() { protected_ = true; }

    DWORD sectors() const override { return sectors_; }
    DWORD read(DWORD first, std::span<std::byte> buffer) override;
    DWORD write(DWORD first, std::span<const std::byte> data) override;
    DWORD settle() override;
    bool writeProtected() const override { return protected_; }

private:
    int descriptor_;
    bool protected_;
    DWORD sectors_ = 0;
};

DWORD hostError() {
    return windowsError(errno);
}

off_t offsetOf(DWORD sector) {
    return static_cast<off_t>(sector) * static_cast<off_t>(sectorSize);
}

DWORD HostStore::read(DWORD first, std::span<std::byte> buffer) {
    if (!onMedium(first, buffer.size())) {
        return ERROR_SECTOR_NOT_FOUND;
    }
    off_t at = offsetOf(first);
    while (!buffer.empty()) {
        const ssize_t count = ::pread(descriptor_, buffer.data(), buffer.size(), at);
        if (count == 0) {
            return ERROR_SECTOR_NOT_FOUND;  // another program has truncated the image
        }
        if (count < 0 && errno != EINTR) {
            return hostError();
        }
        if (count > 0) {
            buffer = buffer.subspan(static_cast<std::size_t>(count));
            at += count;
        }
    }
    return NO_ERROR;
}

DWORD HostStore::write(DWORD first, std::span<const std::byte> data) {
    if (protected_) {
        return ERROR_WRITE_PROTECT;
    }
    if (!onMedium(first, data.size())) {
        return ERROR_SECTOR_NOT_FOUND;
    }
    off_t at = offsetOf(first);
    while (!data.empty()) {
        const ssize_t count = ::pwrite(descriptor_, data.data(), data.size(), at);
        if (count < 0 && errno != EINTR) {
            return hostError();
        }
        if (count > 0) {
            data = data.subspan(static_cast<std::size_t>(count));
            at += count;
        }
    }
    return NO_ERROR;
}

DWORD HostStore::settle() {
    if (!protected_ && ::fsync(descriptor_) != 0) {
        return hostError();
    }
    // Only a hint, so that later reads come from the medium.
    ::posix_fadvise(descriptor_, 0, 0, POSIX_FADV_DONTNEED);
    return NO_ERROR;
}

// The permissions act as the write-protect tab, even for the superuser.
bool nobodyMayWrite(int descriptor) {
    constexpr mode_t writing = S_IWUSR | S_IWGRP | S_IWOTH;
    struct stat facts {};
    return ::fstat(descriptor, &facts) == 0 && (facts.st_mode & writing) == 0;
}

// Opens for reading and writing, or else for reading only.
std::unique_ptr<HostStore> openHost(const std::filesystem::path& path, int flags, DWORD& error) {
    error = NO_ERROR;
    int descriptor = ::open(path.c_str(), O_RDWR | O_CLOEXEC | flags, 0666);
    const bool writeProtected = descriptor < 0 && (errno == EACCES || errno == EROFS || errno == EPERM);
    if (writeProtected && (flags & O_CREAT) == 0) {
        descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags);
    }
    if (descriptor < 0) {
        error = hostError();
        return nullptr;
    }
    return std::make_unique<HostStore>(descriptor, writeProtected || nobodyMayWrite(descriptor));
}

// Gets the properties of a block device from the kernel.
DWORD examineDevice(HostStore& store) {
    std::uint64_t bytes = 0;
    int logicalSector = 0;
    int readOnly = 0;
    if (::ioctl(store.descriptor(), BLKGETSIZE64, &bytes) != 0 ||
        ::ioctl(store.descriptor(), BLKSSZGET, &logicalSector) != 0 ||
        ::ioctl(store.descriptor(), BLKROGET, &readOnly) != 0) {
        return hostError();
    }
    if (bytes != std::uint64_t{sectors1440} * sectorSize || logicalSector != static_cast<int>(sectorSize)) {
        return ERROR_UNRECOGNIZED_MEDIA;
    }
    store.setSectors(sectors1440);
    if (readOnly != 0) {
        store.setWriteProtected();
    }
    return NO_ERROR;
}

}  // namespace

DWORD openImage(const std::filesystem::path& file, std::unique_ptr<SectorStore>& store) {
    DWORD error = NO_ERROR;
    auto image = openHost(file, 0, error);
    if (!image) {
        return error;
    }
    struct stat facts {};
    if (::fstat(image->descriptor(), &facts) != 0) {
        return hostError();
    }
    const auto is = [&](DWORD sectors) { return facts.st_size == offsetOf(sectors); };
    if (!S_ISREG(facts.st_mode) || !(is(sectors1440) || is(sectors720))) {
        return ERROR_UNRECOGNIZED_MEDIA;
    }
    image->setSectors(is(sectors1440) ? sectors1440 : sectors720);
    store = std::move(image);
    return NO_ERROR;
}

DWORD createImage(const std::filesystem::path& file, DWORD sectorCount, std::unique_ptr<SectorStore>& store) {
    DWORD error = NO_ERROR;
    auto image = openHost(file, O_CREAT | O_EXCL, error);
    if (!image) {
        return error;
    }
    if (::ftruncate(image->descriptor(), offsetOf(sectorCount)) != 0) {
        error = hostError();
        ::unlink(file.c_str());
        return error;
    }
    image->setSectors(sectorCount);
    store = std::move(image);
    return NO_ERROR;
}

DWORD openBlockDevice(const std::filesystem::path& device, std::unique_ptr<SectorStore>& store) {
    DWORD error = NO_ERROR;
    struct stat facts {};
    if (::stat(device.c_str(), &facts) != 0) {
        return hostError();
    }
    if (!S_ISBLK(facts.st_mode)) {
        return ERROR_BAD_DEVICE;
    }
    auto opened = openHost(device, O_EXCL, error);
    if (!opened) {
        return error == ERROR_SHARING_VIOLATION ? ERROR_BUSY : error;
    }
    error = examineDevice(*opened);
    if (error == NO_ERROR) {
        store = std::move(opened);
    }
    return error;
}

}  // namespace winlayer
