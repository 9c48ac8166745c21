#pragma once
#include <windows.h>

#include <utility>

namespace UTILS {

// Owns one system handle and closes it on destruction. 0 and INVALID_HANDLE_VALUE both mean "nothing open".
class OwnedHandle {
public:
    OwnedHandle() noexcept = default;
    explicit OwnedHandle(HANDLE handle) noexcept : handle_(handle) {}
    OwnedHandle(OwnedHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    OwnedHandle& operator=(OwnedHandle&& other) noexcept {
        if (this != &other) {
            Close();
            handle_ = std::exchange(other.handle_, nullptr);
        }
        return *this;
    }
    ~OwnedHandle() { Close(); }

    HANDLE get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE; }

    // Closes the handle and drops it even if the system refuses: it refuses only what is no longer open, and
    // a second attempt might close a reused handle. False if it refused.
    bool Close() noexcept {
        const bool closed = !*this || ::CloseHandle(handle_);
        handle_ = nullptr;
        return closed;
    }

private:
    HANDLE handle_ = nullptr;
};

}  // namespace UTILS
