#pragma once
#include <windows.h>

#include <array>
#include <cstddef>

// The emergency diskette's sector 0: a FAT12 parameter block for 1.44 MB and the boot code of boot_code.S.
// docs/boot-sector.md describes both.

namespace boot_sector {

inline constexpr std::size_t size = 512;
using Image = std::array<unsigned char, size>;

// Offsets of the fields; numbers are little-endian.
inline constexpr std::size_t jumpAt = 0x000;               // 3 bytes
inline constexpr std::size_t oemNameAt = 0x003;            // 8 characters
inline constexpr std::size_t bytesPerSectorAt = 0x00B;     // 16 bits
inline constexpr std::size_t sectorsPerClusterAt = 0x00D;  // 8 bits
inline constexpr std::size_t reservedSectorsAt = 0x00E;    // 16 bits
inline constexpr std::size_t fatCountAt = 0x010;           // 8 bits
inline constexpr std::size_t rootEntriesAt = 0x011;        // 16 bits
inline constexpr std::size_t totalSectorsAt = 0x013;       // 16 bits
inline constexpr std::size_t mediaDescriptorAt = 0x015;    // 8 bits
inline constexpr std::size_t sectorsPerFatAt = 0x016;      // 16 bits
inline constexpr std::size_t sectorsPerTrackAt = 0x018;    // 16 bits
inline constexpr std::size_t headsAt = 0x01A;              // 16 bits
inline constexpr std::size_t hiddenSectorsAt = 0x01C;      // 32 bits
inline constexpr std::size_t largeTotalSectorsAt = 0x020;  // 32 bits
inline constexpr std::size_t driveNumberAt = 0x024;        // 8 bits
inline constexpr std::size_t reservedAt = 0x025;           // 8 bits
inline constexpr std::size_t extendedSignatureAt = 0x026;  // 8 bits
inline constexpr std::size_t serialNumberAt = 0x027;       // 32 bits
inline constexpr std::size_t volumeLabelAt = 0x02B;        // 11 characters
inline constexpr std::size_t fileSystemTypeAt = 0x036;     // 8 characters
inline constexpr std::size_t templateAt = 0x03E;           // work area, code, message, loader name, signature
inline constexpr std::size_t codeAt = 0x043;
inline constexpr std::size_t restartAt = 0x082;  // the loader's return address: a jump to 7C00h
inline constexpr std::size_t messageAt = 0x1C3;  // zero-terminated
inline constexpr std::size_t loaderNameAt = 0x1E5;
inline constexpr std::size_t signatureAt = 0x1FE;  // 55 AA

inline constexpr std::size_t templateSize = size - templateAt;
inline constexpr std::size_t codeSize = messageAt - codeAt;
inline constexpr std::size_t directoryNameSize = 11;

// The 1.44 MB diskette.
inline constexpr unsigned cylinders = 80;
inline constexpr unsigned heads = 2;
inline constexpr unsigned sectorsPerTrack = 18;
inline constexpr unsigned totalSectors = cylinders * heads * sectorsPerTrack;

// Its volume, in sectors: the boot sector, the FATs, the root directory, then clusters of one sector.
inline constexpr unsigned fatStart = 1;
inline constexpr unsigned fatCount = 2;
inline constexpr unsigned fatSize = 9;
inline constexpr unsigned rootStart = fatStart + fatCount * fatSize;
inline constexpr unsigned rootEntries = 224;
inline constexpr unsigned rootSize = rootEntries / 16;
inline constexpr unsigned dataStart = rootStart + rootSize;
inline constexpr unsigned firstCluster = 2;
inline constexpr unsigned clusterCount = totalSectors - dataStart;
inline constexpr unsigned clusterEnd = firstCluster + clusterCount;  // one past the last

// The 450 bytes from templateAt to the end of every boot sector, as the assembler made them.
// The reference is valid for the life of the program.
const std::array<unsigned char, templateSize>& Template();

// Builds a complete boot sector with the given volume serial number.
Image Build(DWORD serialNumber);

// Draws a volume serial number from RandomInRange with the mask AAAAFFFFh and the lower bound AAAAAAh.
DWORD DrawSerialNumber();

}  // namespace boot_sector

// A small pseudo-random generator that reseeds from the clock when it rejects a candidate.
class RandomSource {
public:
    // Draws a number of at least lowerBound that has no bit outside the mask. Only the low 24 bits of the
    // mask have an effect. Result: the number, or 0 if no number within the mask reaches the lower bound.
    // Thread rule: one thread at a time.
    DWORD64 Draw(DWORD64 mask, DWORD64 lowerBound);

private:
    DWORD Step();
    void Reseed();

    DWORD state_ = 1;
    unsigned shift_ = 8;
    DWORD rejected_ = 0;
};

// Draws from the module's single source; parameters, result and thread rule as for RandomSource::Draw.
DWORD64 RandomInRange(DWORD64 mask, DWORD64 lowerBound);
