#pragma once
#include <memory>
#include <mutex>

#include "winlayer/file_system/file_system.h"

namespace winlayer {

// The object of a FindFirstFileA handle. Only FindNextFileA and FindClose accept it.
class SearchObject final : public KernelObject {
public:
    explicit SearchObject(std::unique_ptr<Listing> found) : listing(std::move(found)) {}

    std::mutex mutex;
    const std::unique_ptr<Listing> listing;
};

}  // namespace winlayer
