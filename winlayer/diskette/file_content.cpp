#include "winlayer/diskette/file_content.h"

#include <algorithm>
#include <vector>

#include "winlayer/diskette/disk_error.h"

namespace winlayer {
namespace {

constexpr std::uint64_t largestFile = 0xFFFFFFFF;

// The sectors of one chain, in runs of consecutive sectors.
class Content {
public:
    Content(VolumeParts& parts, const std::vector<DWORD>& chain) : parts_(parts), chain_(chain) {}

    void read(DWORD offset, std::span<std::byte> buffer);
    // In a sector that is written in part, bytes below `valid` are kept.
    void write(DWORD offset, std::span<const std::byte> data, DWORD valid);

private:
    struct Run {
        DWORD first;
        DWORD count;
    };
    Run run(DWORD index, std::size_t atMost) const;
    DWORD sector(DWORD index) const;
    Sector present(DWORD index, DWORD valid);

    VolumeParts& parts_;
    const std::vector<DWORD>& chain_;
};

DWORD Content::sector(DWORD index) const {
    const DWORD perCluster = parts_.layout.sectorsPerCluster;
    return parts_.layout.clusterSector(chain_[index / perCluster]) + index % perCluster;
}

Content::Run Content::run(DWORD index, std::size_t atMost) const {
    Run found{sector(index), 1};
    while (found.count < atMost && sector(index + found.count) == found.first + found.count) {
        ++found.count;
    }
    return found;
}

void Content::read(DWORD offset, std::span<std::byte> buffer) {
    while (!buffer.empty()) {
        const DWORD inside = offset % sectorSize;
        std::size_t moved = 0;
        if (inside == 0 && buffer.size() >= sectorSize) {
            const Run whole = run(offset / sectorSize, buffer.size() / sectorSize);
            moved = std::size_t{whole.count} * sectorSize;
            parts_.cache.readContent(whole.first, buffer.first(moved));
        } else {
            Sector bytes;
            parts_.cache.readContent(sector(offset / sectorSize), bytes);
            moved = std::min<std::size_t>(sectorSize - inside, buffer.size());
            std::copy_n(bytes.begin() + inside, moved, buffer.begin());
        }
        buffer = buffer.subspan(moved);
        offset += static_cast<DWORD>(moved);
    }
}

// Bytes from `valid` on do not matter, so a sector with no others is not read.
Sector Content::present(DWORD index, DWORD valid) {
    Sector bytes{};
    if (index * sectorSize < valid) {
        parts_.cache.readContent(sector(index), bytes);
    }
    return bytes;
}

void Content::write(DWORD offset, std::span<const std::byte> data, DWORD valid) {
    while (!data.empty()) {
        const DWORD inside = offset % sectorSize;
        std::size_t moved = 0;
        if (inside == 0 && data.size() >= sectorSize) {
            const Run whole = run(offset / sectorSize, data.size() / sectorSize);
            moved = std::size_t{whole.count} * sectorSize;
            parts_.cache.writeContent(whole.first, data.first(moved));
        } else {
            Sector bytes = present(offset / sectorSize, valid);
            moved = std::min<std::size_t>(sectorSize - inside, data.size());
            std::copy_n(data.begin(), moved, bytes.begin() + inside);
            parts_.cache.writeContent(sector(offset / sectorSize), bytes);
        }
        data = data.subspan(moved);
        offset += static_cast<DWORD>(moved);
    }
}

DWORD clustersFor(const VolumeParts& parts, std::uint64_t bytes) {
    const DWORD cluster = parts.layout.clusterBytes();
    return static_cast<DWORD>((bytes + cluster - 1) / cluster);
}

// The file's chain, which must be long enough for its size.
std::vector<DWORD> chainOf(VolumeParts& parts, const DirectoryEntry& entry) {
    std::vector<DWORD> chain = parts.fat.chain(entry.firstCluster);
    if (chain.size() < clustersFor(parts, entry.size)) {
        throw DiskError{ERROR_FILE_CORRUPT};
    }
    return chain;
}

// Extends the chain for `size` bytes as far as space allows; returns the bytes it then holds, at most `size`.
std::uint64_t reserve(VolumeParts& parts, std::vector<DWORD>& chain, std::uint64_t size) {
    const DWORD needed = clustersFor(parts, size);
    if (needed > chain.size()) {
        parts.fat.extend(chain, needed - static_cast<DWORD>(chain.size()));
    }
    return std::min<std::uint64_t>(size, std::uint64_t{chain.size()} * parts.layout.clusterBytes());
}

void fillWithZeros(VolumeParts& parts, const std::vector<DWORD>& chain, DWORD from, DWORD to) {
    if (from < to) {
        const std::vector<std::byte> zeros(to - from);
        Content(parts, chain).write(from, zeros, from);
    }
}

}  // namespace

DWORD readContent(VolumeParts& parts, const DirectoryEntry& entry, std::uint64_t offset,
                  std::span<std::byte> buffer) {
    if (offset >= entry.size || buffer.empty()) {
        return 0;
    }
    const auto start = static_cast<DWORD>(offset);
    const std::size_t count = std::min<std::size_t>(buffer.size(), entry.size - start);
    const std::vector<DWORD> chain = chainOf(parts, entry);
    Content(parts, chain).read(start, buffer.first(count));
    return static_cast<DWORD>(count);
}

DWORD writeContent(VolumeParts& parts, DirectoryEntry& entry, std::uint64_t offset,
                   std::span<const std::byte> data) {
    if (data.empty()) {
        return 0;
    }
    if (offset >= largestFile) {
        throw DiskError{ERROR_DISK_FULL};
    }
    std::vector<DWORD> chain = chainOf(parts, entry);
    const std::uint64_t wanted = std::min<std::uint64_t>(offset + data.size(), largestFile);
    const std::uint64_t end = reserve(parts, chain, std::max<std::uint64_t>(wanted, entry.size));
    if (end <= offset) {
        throw DiskError{ERROR_DISK_FULL};
    }
    const auto start = static_cast<DWORD>(offset);
    const auto count = static_cast<DWORD>(std::min<std::uint64_t>(end - offset, data.size()));
    fillWithZeros(parts, chain, entry.size, start);
    Content(parts, chain).write(start, data.first(count), std::max(entry.size, start));
    entry.firstCluster = chain.front();
    entry.size = std::max(entry.size, start + count);
    return count;
}

void resizeContent(VolumeParts& parts, DirectoryEntry& entry, std::uint64_t size) {
    if (size > largestFile) {
        throw DiskError{ERROR_DISK_FULL};
    }
    std::vector<DWORD> chain = chainOf(parts, entry);
    if (reserve(parts, chain, size) < size) {
        throw DiskError{ERROR_DISK_FULL};
    }
    parts.fat.cut(chain, clustersFor(parts, size));
    fillWithZeros(parts, chain, entry.size, static_cast<DWORD>(size));
    entry.firstCluster = chain.empty() ? 0 : chain.front();
    entry.size = static_cast<DWORD>(size);
}

}  // namespace winlayer
