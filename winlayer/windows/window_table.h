#pragma once
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "winlayer/windows/window.h"

namespace winlayer {

// The existing windows, by handle. A handle is an index with a generation, so that one of a destroyed window
// is recognised after its slot was reused. Thread rule: any thread may call every operation.
class WindowTable {
public:
    // Returns the window's new handle; null if all 32,767 slots are taken.
    HWND add(const std::shared_ptr<Window>& window);
    // Null for a stale or foreign handle.
    std::shared_ptr<Window> find(HWND window) const;
    void remove(HWND window);
    std::size_t count() const;

private:
    struct Slot {
        std::shared_ptr<Window> window;
        std::uint32_t generation = 1;
    };

    mutable std::mutex mutex_;
    std::vector<Slot> slots_;
    std::vector<std::uint32_t> free_;
};

}  // namespace winlayer
