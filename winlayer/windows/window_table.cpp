#include "winlayer/windows/window_table.h"

namespace winlayer {
namespace {

constexpr std::size_t maxWindows = 0x7FFF;
constexpr std::uint32_t generationMask = 0x7FFF;

// The low word is even and at least 2, so that no handle equals HWND_TOP and the like.
HWND handleOf(std::size_t index, std::uint32_t generation) {
    const std::uint32_t value = generation << 16 | static_cast<std::uint32_t>((index + 1) * 2);
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(value));
}

std::size_t indexOf(HWND window) {
    return (reinterpret_cast<std::uintptr_t>(window) & 0xFFFF) / 2 - 1;
}

}  // namespace

HWND WindowTable::add(const std::shared_ptr<Window>& window) {
    const std::lock_guard lock(mutex_);
    std::size_t index = slots_.size();
    if (!free_.empty()) {
        index = free_.back();
        free_.pop_back();
    } else if (index == maxWindows) {
        return nullptr;
    } else {
        free_.reserve(slots_.capacity() + 1);  // for remove(), which must not fail
        slots_.emplace_back();
    }
    slots_[index].window = window;
    return window->handle = handleOf(index, slots_[index].generation);
}

std::shared_ptr<Window> WindowTable::find(HWND window) const {
    const std::lock_guard lock(mutex_);
    const std::size_t index = indexOf(window);
    if (index >= slots_.size() || window != handleOf(index, slots_[index].generation)) {
        return nullptr;
    }
    return slots_[index].window;
}

void WindowTable::remove(HWND window) {
    std::shared_ptr<Window> last;  // destroyed outside the lock
    const std::lock_guard lock(mutex_);
    const std::size_t index = indexOf(window);
    if (index < slots_.size() && window == handleOf(index, slots_[index].generation)) {
        last = std::move(slots_[index].window);
        slots_[index].generation = slots_[index].generation % generationMask + 1;
        free_.push_back(static_cast<std::uint32_t>(index));
    }
}

std::size_t WindowTable::count() const {
    const std::lock_guard lock(mutex_);
    return slots_.size() - free_.size();
}

}  // namespace winlayer
