#pragma once
#include <cstdint>
#include <span>

#include "winlayer/diskette/directory.h"

// The bytes of a file. The entry given is brought up to date (first cluster, size) but not written; changes
// of the table wait for the cache's commit, while content goes to the medium at once. Failures are thrown as
// DiskError.

namespace winlayer {

// Bytes read; fewer at the file's end.
DWORD readContent(VolumeParts& parts, const DirectoryEntry& entry, std::uint64_t offset,
                  std::span<std::byte> buffer);

// Bytes written; fewer when the volume is full. What lies between the file's end and the offset becomes zero.
// ERROR_DISK_FULL when not one byte has room.
DWORD writeContent(VolumeParts& parts, DirectoryEntry& entry, std::uint64_t offset,
                   std::span<const std::byte> data);

// ERROR_DISK_FULL when there is no room; bytes that are added are zero.
void resizeContent(VolumeParts& parts, DirectoryEntry& entry, std::uint64_t size);

}  // namespace winlayer
