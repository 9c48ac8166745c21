#pragma once
#include <memory>

#include "winlayer/file_system/file_object.h"
#include "winlayer/include/fileapi.h"

namespace winlayer {

// The file behind a handle if it grants the access (0: any); otherwise null, the last error being set.
std::shared_ptr<FileObject> fileWith(HANDLE handle, DWORD access);

// What a transfer or command with an OVERLAPPED block leaves in it: the number of bytes, the error code, and
// its event signalled. The work is then already done, so nothing is ever pending.
void beginOverlapped(OVERLAPPED& overlapped);
void endOverlapped(OVERLAPPED& overlapped, Transfer transfer);

}  // namespace winlayer
