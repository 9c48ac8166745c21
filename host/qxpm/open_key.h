#pragma once
#include <windows.h>

#include <utility>

namespace qxpm {

// An open registry key, closed by the destructor.
class OpenKey {
public:
    OpenKey() = default;
    ~OpenKey() { close(); }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;

    void close() {
        if (const HKEY key = std::exchange(key_, nullptr)) RegCloseKey(key);
    }
    // For a call that opens a key; closes the current one.
    HKEY* receive() {
        close();
        return &key_;
    }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

}  // namespace qxpm
