#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

#include "winlayer/diskette/sector_store.h"
#include "winlayer/include/winioctl.h"

namespace winlayer {

// Geometry of a medium; its type as Windows, MS-DOS and the BIOS number it.
struct DiskGeometry {
    DWORD cylinders = 0;
    DWORD heads = 0;
    DWORD sectorsPerTrack = 0;
    MEDIA_TYPE mediaType = Unknown;
    BYTE dosDeviceType = 0;  // MS-DOS block-device type
    BYTE biosDriveType = 0;  // INT 13h, function 08h

    DWORD sectors() const { return cylinders * heads * sectorsPerTrack; }
};

inline constexpr DiskGeometry geometry1440{80, 2, 18, F3_1Pt44_512, 7, 4};
inline constexpr DiskGeometry geometry720{80, 2, 9, F3_720_512, 2, 3};

// The parameter block of a FAT12 volume, and the sector numbers computed from it.
struct Fat12Layout {
    DWORD sectorsPerCluster = 1;
    DWORD reservedSectors = 1;
    DWORD fats = 2;
    DWORD rootEntries = 224;
    DWORD totalSectors = sectors1440;
    BYTE media = 0xF0;
    DWORD sectorsPerFat = 9;
    DWORD sectorsPerTrack = 18;
    DWORD heads = 2;
    DWORD hiddenSectors = 0;

    DWORD rootSectors() const { return (rootEntries + 15) / 16; }
    DWORD firstRootSector() const { return reservedSectors + fats * sectorsPerFat; }
    DWORD firstDataSector() const { return firstRootSector() + rootSectors(); }
    DWORD clusters() const { return (totalSectors - firstDataSector()) / sectorsPerCluster; }
    DWORD clusterBytes() const { return sectorsPerCluster * sectorSize; }
    // Clusters are numbered from 2.
    DWORD clusterSector(DWORD cluster) const { return firstDataSector() + (cluster - 2) * sectorsPerCluster; }
    bool isCluster(DWORD number) const { return number >= 2 && number < clusters() + 2; }

    bool operator==(const Fat12Layout&) const = default;
};

// Reads the parameter block of a boot sector (512 bytes). ERROR_UNRECOGNIZED_VOLUME unless it describes a
// FAT12 volume that fits into `sectors` sectors; every value is checked, so the computed sectors lie on the
// medium.
DWORD readLayout(std::span<const std::byte> bootSector, DWORD sectors, Fat12Layout& layout);

// The serial number in a boot sector; 0 when it has none.
DWORD volumeSerial(std::span<const std::byte> bootSector);

// The layout of a blank diskette of 2,880 or 1,440 sectors.
Fat12Layout standardLayout(DWORD sectors);

// Writes a blank FAT12 volume to a medium of 2,880 or 1,440 sectors: a boot sector that boots nothing, two
// FATs and an empty root directory; the data area is not written. Other sizes: ERROR_UNRECOGNIZED_MEDIA.
DWORD formatDiskette(SectorStore& store, DWORD serial);

}  // namespace winlayer
