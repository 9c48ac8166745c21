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

// What a handle stands for: a file, device, event, search, token or registry key. Shared by its handles. The
// classes of such objects have no further derived ones.
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
    // The current machine's.
    static HandleTable& current();

    // Null when all 65,536 places are taken (ERROR_TOO_MANY_OPEN_FILES to the caller).
    HANDLE add(std::shared_ptr<KernelObject> object);

    // The object behind a handle, whatever it is; null for a stale or foreign handle.
    std::shared_ptr<KernelObject> find(HANDLE handle) const;
    // The same when it is one of kind T, else null.
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

    const Slot* slot(HANDLE handle) const;

    mutable std::mutex mutex_;
    std::vector<Slot> slots_;
    std::vector<std::uint32_t> free_;
};

}  // namespace winlayer
