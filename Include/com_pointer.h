#pragma once
#include <windows.h>
// Not part of <windows.h>.
#include <objbase.h>

#include <utility>

namespace UTILS {

// Initialises COM on the calling thread for the scope. A thread already initialised in another mode works too
// and is left as it was.
class ComScope {
public:
    ComScope() : result_(::CoInitialize(nullptr)) {}
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;
    ~ComScope() {
        if (SUCCEEDED(result_)) {
            ::CoUninitialize();
        }
    }

private:
    HRESULT result_;
};

// Owns one reference to an interface of an object, or none.
template <class Interface>
class ComPointer {
public:
    ComPointer() = default;
    ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPointer& operator=(ComPointer&&) = delete;
    ~ComPointer() {
        if (object_ != nullptr) {
            object_->Release();
        }
    }

    // A new COM object; empty if it cannot be created.
    static ComPointer Created(REFCLSID classId, REFIID interfaceId) {
        void* object = nullptr;
        const HRESULT result =
            ::CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, interfaceId, &object);
        return ComPointer(SUCCEEDED(result) ? object : nullptr);
    }
    // Another interface of the same object; empty if it has no such interface, or there is no object.
    template <class Other>
    ComPointer<Other> As(REFIID interfaceId) const {
        void* object = nullptr;
        const bool found = object_ != nullptr && SUCCEEDED(object_->QueryInterface(interfaceId, &object));
        return ComPointer<Other>(found ? object : nullptr);
    }

    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    template <class Other>
    friend class ComPointer;
    explicit ComPointer(void* object) : object_(static_cast<Interface*>(object)) {}

    Interface* object_ = nullptr;
};

}  // namespace UTILS
