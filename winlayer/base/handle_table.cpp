#include "winlayer/base/handle_table.h"

namespace winlayer {

namespace {

// A handle's value: two zero bits, 16 bits of index, 13 bits of generation. The generation starts at 1, so
// no handle is null, and the value stays below 2^31.
constexpr unsigned valueShift = 2;
constexpr unsigned indexBits = 16;
constexpr std::uint32_t indexMask = (1u << indexBits) - 1;
constexpr std::uint32_t lastGeneration = (1u << (31 - indexBits - valueShift)) - 1;

HANDLE toHandle(std::uint32_t index, std::uint32_t generation) {
    const std::uint32_t value = (generation << indexBits | index) << valueShift;
    return reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(value));
}

}  // namespace

HANDLE HandleTable::add(std::shared_ptr<KernelObject> object) {
    const std::lock_guard lock(mutex_);
    std::uint32_t index = 0;
    if (!free_.empty()) {
        index = free_.back();
        free_.pop_back();
    } else if (slots_.size() <= indexMask) {
        // Reserved now, so that closing a handle never allocates.
        free_.reserve(slots_.capacity() + 1);
        index = static_cast<std::uint32_t>(slots_.size());
        slots_.emplace_back();
    } else {
        return nullptr;
    }
    slots_[index].object = std::move(object);
    return toHandle(index, slots_[index].generation);
}

const HandleTable::Slot* HandleTable::slot(HANDLE handle) const {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const std::uintptr_t index = (value >> valueShift) & indexMask;
    if (value > std::numeric_limits<std::uint32_t>::max() || index >= slots_.size() ||
        toHandle(static_cast<std::uint32_t>(index), slots_[index].generation) != handle ||
        slots_[index].object == nullptr) {
        return nullptr;
    }
    return &slots_[index];
}

std::shared_ptr<KernelObject> HandleTable::find(HANDLE handle) const {
    const std::lock_guard lock(mutex_);
    const Slot* found = slot(handle);
    return found != nullptr ? found->object : nullptr;
}

std::shared_ptr<KernelObject> HandleTable::remove(HANDLE handle) {
    const std::lock_guard lock(mutex_);
    const Slot* found = slot(handle);
    if (found == nullptr) {
        return nullptr;
    }
    const auto index = static_cast<std::uint32_t>(found - slots_.data());
    free_.push_back(index);
    Slot& emptied = slots_[index];
    emptied.generation = emptied.generation == lastGeneration ? 1 : emptied.generation + 1;
    return std::move(emptied.object);
}

std::size_t HandleTable::openCount() const {
    const std::lock_guard lock(mutex_);
    return slots_.size() - free_.size();
}

}  // namespace winlayer
