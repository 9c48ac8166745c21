#pragma once
#include <filesystem>
#include <memory>

#include "winlayer/diskette/sector_store.h"

// Media on the host. Each operation returns a Windows error code (0 = success) and passes the store to the
// caller. If the host does not let this process write a file or device, or its permissions let nobody write
// it, the medium is write-protected.

namespace winlayer {

// An image file of exactly 1,474,560 or 737,280 bytes; ERROR_UNRECOGNIZED_MEDIA for any other size.
DWORD openImage(const std::filesystem::path& file, std::unique_ptr<SectorStore>& store);

// Creates an image file of the given number of sectors, all zero; ERROR_FILE_EXISTS if the file exists.
DWORD createImage(const std::filesystem::path& file, DWORD sectorCount, std::unique_ptr<SectorStore>& store);

// A block device of exactly 2,880 sectors of 512 bytes, opened exclusively. ERROR_BAD_DEVICE if it is not a
// block device, ERROR_UNRECOGNIZED_MEDIA for another size, ERROR_BUSY if it is in use (mounted, for example).
DWORD openBlockDevice(const std::filesystem::path& device, std::unique_ptr<SectorStore>& store);

}  // namespace winlayer
