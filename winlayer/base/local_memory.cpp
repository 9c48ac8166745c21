#include "winlayer/base/local_memory.h"

#include <algorithm>

namespace winlayer {

void* LocalMemory::allocate(std::size_t bytes) {
    auto block = std::make_unique<std::byte[]>(std::max<std::size_t>(bytes, 1));
    void* const address = block.get();
    const std::lock_guard lock(mutex_);
    blocks_.emplace(address, std::move(block));
    return address;
}

bool LocalMemory::release(const void* block) {
    const std::lock_guard lock(mutex_);
    return blocks_.erase(block) != 0;
}

std::size_t LocalMemory::blockCount() const {
    const std::lock_guard lock(mutex_);
    return blocks_.size();
}

}  // namespace winlayer
