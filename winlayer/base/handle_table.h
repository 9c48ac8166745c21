#pragma once
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The object that a handle refers to: a file, device, event, search, token or registry key. Its handles share
// it. Classes derived from it are final.
class KernelObject {
public:
    KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;
    virtual ~KernelObject() = default;
};

// The process's handles. A handle is an index with a generation, so that a closed one is recognised even
// after its slot was reused. Values are multiples of 4 below 2^31 and never equal a pseudo handle or a
// predefined key. Thread rule: any thread may call every operation.
class HandleTable {
public:
    // The current machine's.
    static HandleTable& current();

    // Null when all 65,536 slots are taken (the caller reports ERROR_TOO_MANY_OPEN_FILES).
    HANDLE add(std::shared_ptr<KernelObject> object);

    // The object of a handle, of any type; null for a stale or foreign handle.
    std::shared_ptr<KernelObject> find(HANDLE handle) const;
    // The same, but null unless the object is a T.
    template <class T>
    std::shared_ptr<T> get(HANDLE handle) const {
        static_assert(std::is_final_v<T>);
        std::shared_ptr<KernelObject> object = find(handle);
        const KernelObject* const found = object.get();
        if (found == nullptr || typeid(*found) != typeid(T)) {
            return nullptr;
        }
        return std::static_pointer_cast<T>(std::move(object));
    }

    // Removes the handle and returns its object (null for a stale handle), so that closing it runs outside
    // the table's lock.
    std::shared_ptr<KernelObject> remove(HANDLE handle);

    std::size_t openCount() const;

private:
    struct Slot {
        std::shared_ptr<KernelObject> object;
        std::uint32_t generation = 1;
    };

    const Slot* slot(HANDLE handle) const;

    mutable std::mutex mutex_;
    std::vector<Slot> slots_;
    std::vector<std::uint32_t> free_;
};

}  // namespace winlayer
