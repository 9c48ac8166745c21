#pragma once
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>

namespace winlayer {

// Memory that a function of the layer hands to its caller (formatted messages, security identifiers). The one
// place where the caller gets a host address, because it reads and writes there. A test can ask how many
// blocks were not given back. Thread rule: every operation may be called from any thread.
class LocalMemory {
public:
    // The current machine's.
    static LocalMemory& current();

    // Zero-filled, at least one byte.
    void* allocate(std::size_t bytes);
    // False when the address is no block of this memory.
    bool release(const void* block);
    std::size_t blockCount() const;

private:
    mutable std::mutex mutex_;
    std::map<const void*, std::unique_ptr<std::byte[]>> blocks_;
};

}  // namespace winlayer
