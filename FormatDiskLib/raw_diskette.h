#pragma once
#include <windows.h>

#include <cstddef>
#include <span>

#include "diskio.h"

// The sectors of the diskette in a drive, below its file system: through \\.\A: on NT, through VWIN32 on
// Windows 95/98/Me.
//
//   RawDiskette diskette;
//   diskette.OpenDrive('A');
//   diskette.DropCache();
//   diskette.ReadSectors(0, std::as_writable_bytes(std::span(bootSector)));
class RawDiskette : public UTILS::DiskIO {
public:
    // Opens the drive of that letter for reading, after closing what was open. Throws DiskIoException type 1.
    void OpenDrive(char letter);

    // Makes Windows 95/98/Me flush and invalidate its cache of the open drive; a refusal is not reported. NT
    // needs no call: it reads the sectors of a volume from the medium.
    void DropCache();

    // Reads whole sectors of 512 bytes, at most 65535, starting at `first` (0 = boot sector). Throws
    // DiskIoException if one cannot be read; the buffer contents are then undefined.
    void ReadSectors(DWORD first, std::span<std::byte> buffer);

private:
    void ReadThroughDevice(DWORD first, std::span<std::byte> buffer);
    void ReadThroughVwin32(DWORD first, std::span<std::byte> buffer);

    char letter_ = 'A';
};
