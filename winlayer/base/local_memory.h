#pragma once
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>

namespace winlayer {

// Memory that a function of the layer hands to its caller (formatted messages, security identifiers): the one
// place where the caller gets a host address, because it reads and writes there. A test can count the blocks
// not yet freed. Thread rule: any thread may call every operation.
class LocalMemory {
public:
    // The current machine's.
    static LocalMemory& current();

    // Zero-filled, at least one byte.
    void* allocate(std::size_t bytes);
    // False when the address is not a block of this memory.
    bool release(const void* block);
    std::size_t blockCount() const;

private:
    mutable std::mutex mutex_;
    std::map<const void*, std::unique_ptr<std::byte[]>> blocks_;
};

}  // namespace winlayer
