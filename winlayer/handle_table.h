#pragma once
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// What a handle stands for: a file, device, event, search, token or registry key. Shared by its handles.
class KernelObject {
public:
    KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;
    virtual ~KernelObject() = default;
};

// The process's handles. A handle is an index with a generation, so that a closed one is recognised even
// after its place was given away. Values are multiples of 4 below 2^31 and never equal a pseudo handle or a
// predefined key. Thread rule: every operation may be called from any thread.
class HandleTable {
public:
    // Null when all 65,536 places are taken (ERROR_TOO_MANY_OPEN_FILES to the caller).
    HANDLE add(std::shared_ptr<KernelObject> object);

    // The object behind a handle when it is one of kind T; null for a stale or foreign handle.
    template <class T>
    std::shared_ptr<T> get(HANDLE handle) const {
        return std::dynamic_pointer_cast<T>(find(handle));
    }

    // Takes the handle out of the table and gives its object back (null for a stale one), so that what
    // closing costs or reports happens outside the table.
    std::shared_ptr<KernelObject> remove(HANDLE handle);

    // Handles open now.
    std::size_t openCount() const;

private:
    struct Slot {
        std::shared_ptr<KernelObject> object;
        std::uint32_t generation = 1;
    };

    std::shared_ptr<KernelObject> find(HANDLE handle) const;
    const Slot* slot(HANDLE handle) const;

    mutable std::mutex mutex_;
    std::vector<Slot> slots_;
    std::vector<std::uint32_t> free_;
};

}  // namespace winlayer
