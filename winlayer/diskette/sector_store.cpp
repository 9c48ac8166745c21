#include "winlayer/diskette/sector_store.h"

#include <algorithm>
#include <utility>

namespace winlayer {

MemoryStore::MemoryStore(DWORD sectorCount) : bytes_(std::size_t{sectorCount} * sectorSize) {}

MemoryStore::MemoryStore(std::vector<std::byte> image) : bytes_(std::move(image)) {}

DWORD MemoryStore::sectors() const {
    return static_cast<DWORD>(bytes_.size() / sectorSize);
}

DWORD MemoryStore::read(DWORD first, std::span<std::byte> buffer) {
    if (!onMedium(first, buffer.size())) {
        return ERROR_SECTOR_NOT_FOUND;
    }
    std::copy_n(bytes_.data() + std::size_t{first} * sectorSize, buffer.size(), buffer.data());
    return NO_ERROR;
}

DWORD MemoryStore::write(DWORD first, std::span<const std::byte> data) {
    if (!onMedium(first, data.size())) {
        return ERROR_SECTOR_NOT_FOUND;
    }
    std::copy_n(data.data(), data.size(), bytes_.data() + std::size_t{first} * sectorSize);
    return NO_ERROR;
}

DWORD MemoryStore::settle() {
    return NO_ERROR;
}

bool MemoryStore::writeProtected() const {
    return false;
}

}  // namespace winlayer
