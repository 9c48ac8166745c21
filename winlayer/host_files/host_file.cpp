#include "winlayer/host_files/host_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "winlayer/base/host_errors.h"

namespace winlayer {

namespace {

// Repeats a call that a signal interrupted before it transferred anything.
template <class Call>
ssize_t uninterrupted(Call call) {
    ssize_t result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

// Host offsets are signed.
bool isHostOffset(std::uint64_t offset) {
    return offset <= static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());
}

}  // namespace

HostDescriptor::~HostDescriptor() {
    if (number_ >= 0) {
        ::close(number_);
    }
}

Transfer HostFile::read(std::uint64_t offset, std::span<std::byte> buffer) {
    if (!isHostOffset(offset)) {
        return {0, ERROR_INVALID_PARAMETER};
    }
    const ssize_t count = uninterrupted(
        [&] { return ::pread(descriptor_.get(), buffer.data(), buffer.size(), static_cast<off_t>(offset)); });
    return count < 0 ? Transfer{0, windowsError(errno)} : Transfer{static_cast<DWORD>(count), 0};
}

// After a partial write the rest is written again, because only then does the host report the reason.
Transfer HostFile::write(std::uint64_t offset, std::span<const std::byte> data) {
    Transfer transfer;
    while (transfer.count < data.size() && transfer.error == 0) {
        const auto rest = data.subspan(transfer.count);
        const std::uint64_t at = offset + transfer.count;
        if (!isHostOffset(at)) {
            transfer.error = ERROR_INVALID_PARAMETER;
            break;
        }
        const ssize_t count = uninterrupted(
            [&] { return ::pwrite(descriptor_.get(), rest.data(), rest.size(), static_cast<off_t>(at)); });
        if (count > 0) {
            transfer.count += static_cast<DWORD>(count);
            grow(at + static_cast<std::uint64_t>(count));
        } else {
            transfer.error = count < 0 ? windowsError(errno) : ERROR_WRITE_FAULT;
        }
    }
    return transfer;
}

DWORD HostFile::flush() {
    return ::fsync(descriptor_.get()) == 0 ? 0 : windowsError(errno);
}

DWORD HostFile::size(std::uint64_t& bytes) {
    bytes = size_.load(std::memory_order_relaxed);
    if (bytes != unknown) {
        return 0;
    }
    struct stat facts;
    if (::fstat(descriptor_.get(), &facts) != 0) {
        return windowsError(errno);
    }
    bytes = static_cast<std::uint64_t>(facts.st_size);
    return 0;
}

void HostFile::grow(std::uint64_t end) {
    std::uint64_t known = size_.load(std::memory_order_relaxed);
    while (known != unknown && known < end && !size_.compare_exchange_weak(known, end)) {
    }
}

DWORD HostFile::resize(std::uint64_t bytes) {
    if (!isHostOffset(bytes)) {
        return ERROR_INVALID_PARAMETER;
    }
    if (::ftruncate(descriptor_.get(), static_cast<off_t>(bytes)) != 0) {
        return windowsError(errno);
    }
    if (size_.load(std::memory_order_relaxed) != unknown) {
        size_.store(bytes, std::memory_order_relaxed);
    }
    return 0;
}

}  // namespace winlayer
