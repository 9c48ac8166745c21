#pragma once
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// An object loaded by the host: a base address that identifies it, and its file (empty for the program
// itself).
struct LoadedObject {
    ULONG_PTR base = 0;
    std::filesystem::path file;
};

// The object whose code or data contains an address.
std::optional<LoadedObject> objectAt(const void* address);
// The object loaded from a file of this name in any folder, ignoring case.
std::optional<LoadedObject> objectNamed(const std::string& fileName);

// Keeps a shared object loaded during its lifetime.
class SharedObject {
public:
    // Null if it cannot be loaded; `reason` is then the host's.
    static std::unique_ptr<SharedObject> load(const std::filesystem::path& file, std::string& reason);
    ~SharedObject();
    SharedObject(const SharedObject&) = delete;
    SharedObject& operator=(const SharedObject&) = delete;

    ULONG_PTR base() const { return base_; }

private:
    explicit SharedObject(void* handle);

    void* handle_;
    ULONG_PTR base_;
};

// A function that the object itself exports, not one that it imports; null if there is none.
FARPROC functionOf(const LoadedObject& object, const std::string& name);

}  // namespace winlayer
