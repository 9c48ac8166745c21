#pragma once
#include <memory>
#include <string>

#include "winlayer/file_object.h"

namespace winlayer {

class Machine;

struct OpenedFile {
    std::unique_ptr<OpenFile> file;
    bool existed = false;
    // Where the file was found; null for a device.
    std::shared_ptr<FileSystem> files;
    std::string below;
};

// Opens what a name stands for: a device when it starts with "\\\\.\\" (a drive's raw device as in
// "\\\\.\\A:", or VWIN32), otherwise a file on a drive.
DWORD openByName(Machine& machine, const std::string& name, const OpenRequest& request, OpenedFile& opened);

}  // namespace winlayer
