#pragma once
#include <filesystem>
#include <memory>

#include "winlayer/diskette/sector_store.h"

// Media that the host keeps. Each operation returns a Windows error code (0 = done) and gives the store to
// the caller; a file or device that the host does not let this process write, or whose permissions let nobody
// write it, becomes a write-protected medium.

namespace winlayer {

// An image file of exactly 1,474,560 or 737,280 bytes; ERROR_UNRECOGNIZED_MEDIA for any other size.
DWORD openImage(const std::filesystem::path& file, std::unique_ptr<SectorStore>& store);

// A new image file of the given number of sectors, all zero; ERROR_FILE_EXISTS when there is a file already.
DWORD createImage(const std::filesystem::path& file, DWORD sectorCount, std::unique_ptr<SectorStore>& store);

// A block device of exactly 2,880 sectors of 512 bytes, opened for this process alone. ERROR_BAD_DEVICE for
// what is no block device, ERROR_UNRECOGNIZED_MEDIA for another size, ERROR_BUSY when it is in use (mounted,
// for one).
DWORD openBlockDevice(const std::filesystem::path& device, std::unique_ptr<SectorStore>& store);

}  // namespace winlayer
