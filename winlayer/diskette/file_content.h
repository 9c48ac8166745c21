#pragma once
#include <cstdint>
#include <span>

#include "winlayer/diskette/directory.h"

// The bytes of a file. Updates the given entry (first cluster, size) but does not write it; changes of the
// table are written by the cache's commit, contents at once. Failures are thrown as DiskError.

namespace winlayer {

// Bytes read; fewer at the end of the file.
DWORD readContent(VolumeParts& parts, const DirectoryEntry& entry, std::uint64_t offset,
                  std::span<std::byte> buffer);

// Bytes written; fewer if the volume is full. Fills a gap between the file's end and the offset with zeros.
// ERROR_DISK_FULL if not even one byte fits.
DWORD writeContent(VolumeParts& parts, DirectoryEntry& entry, std::uint64_t offset,
                   std::span<const std::byte> data);

// ERROR_DISK_FULL if there is no space; added bytes are zero.
void resizeContent(VolumeParts& parts, DirectoryEntry& entry, std::uint64_t size);

}  // namespace winlayer
