#pragma once
#include <memory>

#include "winlayer/file_system/file_object.h"
#include "winlayer/include/fileapi.h"

namespace winlayer {

// The file of a handle that grants this access (0: any); otherwise null, with the last error set.
std::shared_ptr<FileObject> fileWith(HANDLE handle, DWORD access);

// Set the results of a transfer or command in its OVERLAPPED block: the number of bytes, the error code, the
// event signalled. By then the work is done, so nothing is ever pending.
void beginOverlapped(OVERLAPPED& overlapped);
void endOverlapped(OVERLAPPED& overlapped, Transfer transfer);

}  // namespace winlayer
