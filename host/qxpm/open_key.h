#pragma once
#include <windows.h>

#include <utility>

namespace qxpm {

// An open registry key, closed with the object.
class OpenKey {
public:
    OpenKey() = default;
    ~OpenKey() { close(); }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;

    void close() {
        if (const HKEY key = std::exchange(key_, nullptr)) RegCloseKey(key);
    }
    // For a call that opens a key; what was open is closed.
    HKEY* receive() {
        close();
        return &key_;
    }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

}  // namespace qxpm
