#pragma once
#include <memory>
#include <string>

#include "winlayer/file_system/file_object.h"
#include "winlayer/files/path_target.h"

namespace winlayer {

struct OpenedFile {
    std::unique_ptr<OpenFile> file;
    bool existed = false;
    // Where the file was found; without a file system for a device.
    PathTarget target;
};

// Opens what a name stands for: a device when it starts with "\\\\.\\" (a drive's raw device as in
// "\\\\.\\A:", or VWIN32), otherwise a file on a drive.
DWORD openByName(const std::string& name, const OpenRequest& request, OpenedFile& opened);

}  // namespace winlayer
