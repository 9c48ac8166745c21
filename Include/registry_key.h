#pragma once
#include <windows.h>

#include <string>
#include <utility>

namespace UTILS {

// An open registry key, closed on destruction unless it is borrowed: roots stay open.
class RegistryKey {
public:
    RegistryKey() noexcept = default;
    RegistryKey(RegistryKey&& other) noexcept
        : handle_(std::exchange(other.handle_, nullptr)), owned_(std::exchange(other.owned_, false)) {}
    RegistryKey& operator=(RegistryKey&& other) noexcept {
        if (this != &other) {
            Close();
            handle_ = std::exchange(other.handle_, nullptr);
            owned_ = std::exchange(other.owned_, false);
        }
        return *this;
    }
    ~RegistryKey() { Close(); }

    HKEY get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

    void Borrow(HKEY key) noexcept {
        Close();
        handle_ = key;
    }
    void Close() noexcept {
        if (owned_) {
            ::RegCloseKey(handle_);
        }
        handle_ = nullptr;
        owned_ = false;
    }

    // Open, or create, a key below another for reading and writing; an empty path opens that key again.
    // Result: the system's code; a failure leaves this object unchanged.
    LONG Open(HKEY parent, const std::string& path) {
        HKEY opened = nullptr;
        const LONG result = ::RegOpenKeyExA(parent, path.c_str(), 0, access, &opened);
        return Take(result, parent, opened);
    }
    LONG Create(HKEY parent, const std::string& path) {
        HKEY made = nullptr;
        const LONG result = ::RegCreateKeyExA(parent, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                              access, nullptr, &made, nullptr);
        return Take(result, parent, made);
    }

private:
    static constexpr REGSAM access = KEY_READ | KEY_WRITE;

    // The system may return a predefined key as itself.
    LONG Take(LONG result, HKEY parent, HKEY opened) noexcept {
        if (result == ERROR_SUCCESS) {
            Close();
            handle_ = opened;
            owned_ = opened != parent;
        }
        return result;
    }

    HKEY handle_ = nullptr;
    bool owned_ = false;
};

}  // namespace UTILS
