#pragma once
#include <memory>
#include <string>

#include "winlayer/file_system/file_system.h"

namespace winlayer {

// The file system and the path in it that a Windows path leads to.
struct PathTarget {
    std::shared_ptr<FileSystem> files;
    std::string below;
};

// Resolves a path; one that ends in a separator must not lead to a file (ERROR_INVALID_NAME).
DWORD findTarget(const char* path, PathTarget& target);

}  // namespace winlayer
