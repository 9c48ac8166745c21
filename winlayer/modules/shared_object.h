#pragma once
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// Where the host's loader put an object: an address that tells it from others, and the file it came from
// (empty for the program itself).
struct LoadedObject {
    ULONG_PTR base = 0;
    std::filesystem::path file;
};

// The object whose code or data lies at an address.
std::optional<LoadedObject> objectAt(const void* address);
// The object that was loaded from a file of this name, in whatever folder; case does not matter.
std::optional<LoadedObject> objectNamed(const std::string& fileName);

// A shared object that is kept loaded as long as this one lives.
class SharedObject {
public:
    // Null, with the host's reason, when it cannot be loaded.
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

// A function that the object itself exports, not one that it uses; null when there is none.
FARPROC functionOf(const LoadedObject& object, const std::string& name);

}  // namespace winlayer
