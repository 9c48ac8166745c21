#pragma once
#include <windows.h>

#include <utility>

namespace UTILS {

// Owns one system handle: closes it when it goes. 0 and INVALID_HANDLE_VALUE both mean "nothing open".
class OwnedHandle {
public:
    OwnedHandle() noexcept = default;
    explicit OwnedHandle(HANDLE handle) noexcept : handle_(handle) {}
    OwnedHandle(OwnedHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    OwnedHandle& operator=(OwnedHandle&& other) noexcept {
        if (this != &other) {
            Drop();
            handle_ = std::exchange(other.handle_, nullptr);
        }
        return *this;
    }
    ~OwnedHandle() { Drop(); }

    HANDLE get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE; }

    // Closes the handle and forgets it. True when nothing is open afterwards; when the system refuses, the
    // handle is kept, so that a later attempt (the destructor's at the latest) can still close it.
    bool Close() noexcept {
        if (*this && !::CloseHandle(handle_)) return false;
        handle_ = nullptr;
        return true;
    }

private:
    // Nobody is left to be told; a refusal may have been a passing one.
    void Drop() noexcept {
        if (!Close()) Close();
    }

    HANDLE handle_ = nullptr;
};

}  // namespace UTILS
