#include "winlayer/include/minwindef.h"

#include <array>
#include <cstddef>
#include <mutex>

namespace {

// The last addresses handed out, each under its own number. A number is a multiple of 16, as a real address
// of a structure would be, and determines the position in the ring; if a later address has taken that
// position, the stored number differs.
class AddressTable {
public:
    ULONG add(const void* pointer) {
        const std::lock_guard lock(mutex_);
        // Wraps around before it exceeds 2^32, and is never 0.
        next_ = next_ == last ? first : next_ + 1;
        entries_[next_ % entries_.size()] = {pointer, next_};
        return next_ * step;
    }

    const void* find(ULONG address) const {
        const std::lock_guard lock(mutex_);
        const Entry& entry = entries_[address / step % entries_.size()];
        return address % step == 0 && entry.number == address / step ? entry.pointer : nullptr;
    }

private:
    struct Entry {
        const void* pointer = nullptr;
        ULONG number = 0;
    };
    static constexpr ULONG step = 16;
    static constexpr ULONG first = 0x10000;
    static constexpr ULONG last = 0x0FFFFFFF;

    mutable std::mutex mutex_;
    std::array<Entry, 4096> entries_{};
    ULONG next_ = last;
};

AddressTable& addresses() {
    static AddressTable table;
    return table;
}

}  // namespace

ULONG PtrToUlong(const void* pointer) {
    return pointer == nullptr ? 0 : addresses().add(pointer);
}

void* ULongToPtr(ULONG address) {
    return address == 0 ? nullptr : const_cast<void*>(addresses().find(address));
}
