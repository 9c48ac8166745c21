#include "winlayer/host_files/cached_file.h"

#include <algorithm>
#include <limits>

namespace winlayer {

namespace {

constexpr std::size_t pieceSize = 65536;
// From this size a host call costs less than another copy.
constexpr std::size_t largeTransfer = 4096;

}  // namespace

CachedFile::CachedFile(std::unique_ptr<HostFile> file, std::uint64_t size)
    : file_(std::move(file)), size_(size) {
    caching_ = file_->attach(*this);
}

// An error that was not reported when the handle was closed can no longer be reported.
CachedFile::~CachedFile() {
    CachedFile::settle();
    file_->detach();
}

Transfer CachedFile::read(std::uint64_t offset, std::span<std::byte> buffer) {
    const std::lock_guard lock(mutex_);
    if (const DWORD error = passOnLocked(); error != 0) {
        return {0, error};
    }
    return caching_ ? readThrough(offset, buffer) : file_->read(offset, buffer);
}

Transfer CachedFile::readThrough(std::uint64_t offset, std::span<std::byte> buffer) {
    if (!holds(offset, buffer.size()) && (buffer.size() >= largeTransfer || !readAhead(offset))) {
        return file_->read(offset, buffer);
    }
    const std::size_t begin = offset - ahead_.offset;
    const std::size_t count = std::min(buffer.size(), ahead_.bytes.size() - begin);
    std::copy_n(ahead_.bytes.begin() + static_cast<std::ptrdiff_t>(begin), count, buffer.begin());
    return {static_cast<DWORD>(count), 0};
}

bool CachedFile::holds(std::uint64_t offset, std::size_t count) const {
    return offset >= ahead_.offset && offset <= ahead_.end() && count <= ahead_.end() - offset;
}

// The length doubles while the reads move forward.
bool CachedFile::readAhead(std::uint64_t offset) {
    const bool forward = offset >= ahead_.offset && offset - ahead_.offset <= 2 * reach_;
    reach_ = forward ? std::clamp(2 * reach_, largeTransfer, pieceSize) : largeTransfer;
    ahead_.offset = offset;
    ahead_.bytes.resize(reach_);
    const Transfer transfer = file_->read(offset, ahead_.bytes);
    ahead_.bytes.resize(transfer.count);
    return transfer.error == 0;
}

Transfer CachedFile::write(std::uint64_t offset, std::span<const std::byte> data) {
    if (data.empty()) {
        return {};
    }
    const std::lock_guard lock(mutex_);
    ahead_.bytes.clear();
    if (!gathers(offset, data.size())) {
        return writeThrough(offset, data);
    }
    if (behind_.bytes.empty()) {
        behind_.offset = offset;
        behind_.bytes.reserve(pieceSize);
    }
    behind_.bytes.insert(behind_.bytes.end(), data.begin(), data.end());
    size_ = std::max(size_, behind_.end());
    return {static_cast<DWORD>(data.size()), 0};
}

// A large write is appended to a pending piece but does not begin one. After a failed flush nothing more is
// buffered until one succeeds.
bool CachedFile::gathers(std::uint64_t offset, std::size_t count) const {
    if (!caching_ || stuck_ || offset > std::numeric_limits<std::int64_t>::max() - pieceSize) {
        return false;
    }
    return behind_.bytes.empty() ? count < largeTransfer
                                 : offset == behind_.end() && count <= pieceSize - behind_.bytes.size();
}

Transfer CachedFile::writeThrough(std::uint64_t offset, std::span<const std::byte> data) {
    if (const DWORD error = passOnLocked(); error != 0) {
        return {0, error};
    }
    const Transfer transfer = file_->write(offset, data);
    if (transfer.count > 0) {
        size_ = std::max(size_, offset + transfer.count);
    }
    return transfer;
}

DWORD CachedFile::passOnLocked() {
    if (behind_.bytes.empty()) {
        return 0;
    }
    const Transfer transfer = file_->write(behind_.offset, behind_.bytes);
    behind_.offset += transfer.count;
    behind_.bytes.erase(behind_.bytes.begin(), behind_.bytes.begin() + transfer.count);
    stuck_ = transfer.error != 0;
    return transfer.error;
}

DWORD CachedFile::settle() {
    const std::lock_guard lock(mutex_);
    return passOnLocked();
}

DWORD CachedFile::end() {
    const std::lock_guard lock(mutex_);
    const DWORD error = passOnLocked();
    if (error == 0) {
        caching_ = false;
        ahead_ = {};
        behind_ = {};
    }
    return error;
}

DWORD CachedFile::size(std::uint64_t& bytes) {
    const std::lock_guard lock(mutex_);
    if (caching_) {
        bytes = size_;
        return 0;
    }
    return file_->size(bytes);
}

DWORD CachedFile::resize(std::uint64_t bytes) {
    const std::lock_guard lock(mutex_);
    ahead_.bytes.clear();
    if (const DWORD error = passOnLocked(); error != 0) {
        return error;
    }
    const DWORD error = file_->resize(bytes);
    if (error == 0) {
        size_ = bytes;
    }
    return error;
}

}  // namespace winlayer
