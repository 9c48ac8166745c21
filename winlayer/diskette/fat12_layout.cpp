#include "winlayer/diskette/fat12_layout.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "winlayer/diskette/little_endian.h"

namespace winlayer {
namespace {

// Offsets in a boot sector.
constexpr std::size_t atJump = 0x00;
constexpr std::size_t atOemName = 0x03;
constexpr std::size_t atBytesPerSector = 0x0B;
constexpr std::size_t atSectorsPerCluster = 0x0D;
constexpr std::size_t atReservedSectors = 0x0E;
constexpr std::size_t atFats = 0x10;
constexpr std::size_t atRootEntries = 0x11;
constexpr std::size_t atTotalSectors = 0x13;
constexpr std::size_t atMedia = 0x15;
constexpr std::size_t atSectorsPerFat = 0x16;
constexpr std::size_t atSectorsPerTrack = 0x18;
constexpr std::size_t atHeads = 0x1A;
constexpr std::size_t atHiddenSectors = 0x1C;
constexpr std::size_t atLargeTotalSectors = 0x20;
constexpr std::size_t atExtendedSignature = 0x26;
constexpr std::size_t atSerial = 0x27;
constexpr std::size_t atLabel = 0x2B;
constexpr std::size_t atFileSystem = 0x36;
constexpr std::size_t atCode = 0x3E;
constexpr std::size_t atSignature = 0x1FE;

constexpr BYTE extendedSignature = 0x29;
constexpr DWORD mostFat12Clusters = 4084;  // one more and the entries are 16 bits wide

// Whether the values are consistent; none has been checked before.
bool isSane(const Fat12Layout& layout, DWORD sectors) {
    const bool powerOfTwo = (layout.sectorsPerCluster & (layout.sectorsPerCluster - 1)) == 0;
    if (layout.sectorsPerCluster == 0 || !powerOfTwo || layout.reservedSectors == 0 || layout.fats < 1 ||
        layout.fats > 2 || layout.rootEntries == 0 || layout.rootEntries % 16 != 0 || layout.media < 0xF0 ||
        layout.sectorsPerFat == 0 || layout.totalSectors > sectors) {
        return false;
    }
    if (layout.totalSectors <= layout.firstDataSector()) {
        return false;
    }
    const DWORD clusters = layout.clusters();
    const DWORD fatBytes = ((clusters + 2) * 3 + 1) / 2;
    return clusters > 0 && clusters <= mostFat12Clusters && layout.sectorsPerFat * sectorSize >= fatBytes;
}

void putText(std::span<std::byte> block, std::size_t at, std::string_view text) {
    std::transform(text.begin(), text.end(), block.begin() + static_cast<std::ptrdiff_t>(at),
                   [](char c) { return static_cast<std::byte>(c); });
}

std::array<std::byte, sectorSize> blankBootSector(const Fat12Layout& layout, DWORD serial) {
    std::array<std::byte, sectorSize> sector{};
    put8(sector, atJump, 0xEB);  // jmp to the code
    put8(sector, atJump + 1, atCode - 2);
    put8(sector, atJump + 2, 0x90);  // nop
    putText(sector, atOemName, "DISKETTE");
    put16(sector, atBytesPerSector, sectorSize);
    put8(sector, atSectorsPerCluster, layout.sectorsPerCluster);
    put16(sector, atReservedSectors, layout.reservedSectors);
    put8(sector, atFats, layout.fats);
    put16(sector, atRootEntries, layout.rootEntries);
    put16(sector, atTotalSectors, layout.totalSectors);
    put8(sector, atMedia, layout.media);
    put16(sector, atSectorsPerFat, layout.sectorsPerFat);
    put16(sector, atSectorsPerTrack, layout.sectorsPerTrack);
    put16(sector, atHeads, layout.heads);
    put8(sector, atExtendedSignature, extendedSignature);
    put32(sector, atSerial, serial);
    putText(sector, atLabel, "NO NAME    ");
    putText(sector, atFileSystem, "FAT12   ");
    put16(sector, atCode, 0x18CD);      // int 18h: the BIOS tries its next device
    put8(sector, atCode + 2, 0xF4);     // hlt
    put16(sector, atCode + 3, 0xFDEB);  // jmp back to the hlt
    put16(sector, atSignature, 0xAA55);
    return sector;
}

}  // namespace

DWORD readLayout(std::span<const std::byte> bootSector, DWORD sectors, Fat12Layout& layout) {
    const BYTE jump = get8(bootSector, atJump);
    if ((jump != 0xEB && jump != 0xE9) || get16(bootSector, atBytesPerSector) != sectorSize) {
        return ERROR_UNRECOGNIZED_VOLUME;
    }
    Fat12Layout found;
    found.sectorsPerCluster = get8(bootSector, atSectorsPerCluster);
    found.reservedSectors = get16(bootSector, atReservedSectors);
    found.fats = get8(bootSector, atFats);
    found.rootEntries = get16(bootSector, atRootEntries);
    found.totalSectors = get16(bootSector, atTotalSectors);
    if (found.totalSectors == 0) {
        found.totalSectors = get32(bootSector, atLargeTotalSectors);
    }
    found.media = get8(bootSector, atMedia);
    found.sectorsPerFat = get16(bootSector, atSectorsPerFat);
    found.sectorsPerTrack = get16(bootSector, atSectorsPerTrack);
    found.heads = get16(bootSector, atHeads);
    found.hiddenSectors = get32(bootSector, atHiddenSectors);
    if (!isSane(found, sectors)) {
        return ERROR_UNRECOGNIZED_VOLUME;
    }
    layout = found;
    return NO_ERROR;
}

DWORD volumeSerial(std::span<const std::byte> bootSector) {
    return get8(bootSector, atExtendedSignature) == extendedSignature ? get32(bootSector, atSerial) : 0;
}

Fat12Layout standardLayout(DWORD sectors) {
    Fat12Layout layout;
    if (sectors == sectors720) {
        layout.sectorsPerCluster = 2;
        layout.rootEntries = 112;
        layout.totalSectors = sectors720;
        layout.media = 0xF9;
        layout.sectorsPerFat = 3;
        layout.sectorsPerTrack = geometry720.sectorsPerTrack;
    }
    return layout;
}

DWORD formatDiskette(SectorStore& store, DWORD serial) {
    if (store.sectors() != sectors1440 && store.sectors() != sectors720) {
        return ERROR_UNRECOGNIZED_MEDIA;
    }
    const Fat12Layout layout = standardLayout(store.sectors());
    std::vector<std::byte> system(std::size_t{layout.firstDataSector()} * sectorSize);
    const auto boot = blankBootSector(layout, serial);
    std::copy(boot.begin(), boot.end(), system.begin());
    for (DWORD fat = 0; fat < layout.fats; ++fat) {
        const std::size_t at = std::size_t{layout.reservedSectors + fat * layout.sectorsPerFat} * sectorSize;
        put8(system, at, layout.media);  // entries 0 and 1: the media byte, all other bits set
        put16(system, at + 1, 0xFFFF);
    }
    return store.write(0, system);
}

}  // namespace winlayer
