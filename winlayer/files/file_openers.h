#pragma once
#include <memory>
#include <string>

#include "winlayer/file_system/file_object.h"
#include "winlayer/files/path_target.h"

namespace winlayer {

struct OpenedFile {
    std::unique_ptr<OpenFile> file;
    bool existed = false;
    // The file's location; a device has no file system.
    PathTarget target;
};

// Opens a device if the name starts with "\\\\.\\" (a drive's raw device as in "\\\\.\\A:", or VWIN32),
// otherwise a file on a drive.
DWORD openByName(const std::string& name, const OpenRequest& request, OpenedFile& opened);

}  // namespace winlayer
