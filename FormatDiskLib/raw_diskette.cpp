#include "raw_diskette.h"

#include <string>

#include "boot_sector.h"

namespace {

// MS-DOS function 710Dh of Windows 95/98/Me, and its flag that invalidates the caches after flushing them.
constexpr DWORD resetDrive = 0x710D;
constexpr DWORD invalidateCache = 1;

}  // namespace

void RawDiskette::OpenDrive(char letter) {
    letter_ = letter;
    const std::string device = IsNT() ? std::string("\\\\.\\") + letter + ':' : "\\\\.\\VWIN32";
    Open(device.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, 0);
}

void RawDiskette::DropCache() {
    if (IsNT()) {
        return;
    }
    DIOC_REGISTERS in{};
    DIOC_REGISTERS out{};
    in.reg_EAX = resetDrive;
    in.reg_ECX = invalidateCache;
    in.reg_EDX = static_cast<DWORD>(letter_ - 'A') + 1;
    in.reg_Flags = DIOC_CARRY_FLAG;
    try {
        DeviceControl(VWIN32_DIOC_DOS_IOCTL, &in, sizeof in, &out, sizeof out);
    } catch (const UTILS::DiskIoException&) {
        // Reads may then come from a cache; this Windows offers nothing better.
    }
}

void RawDiskette::ReadSectors(DWORD first, std::span<std::byte> buffer) {
    if (IsNT()) {
        ReadThroughDevice(first, buffer);
    } else {
        ReadThroughVwin32(first, buffer);
    }
}

void RawDiskette::ReadThroughDevice(DWORD first, std::span<std::byte> buffer) {
    LARGE_INTEGER offset{};
    offset.QuadPart = LONGLONG{first} * LONGLONG{boot_sector::size};
    SetFilePointer(offset, FILE_BEGIN);
    Read(buffer.data(), static_cast<DWORD>(buffer.size()));
    if (GetBytesRead() != buffer.size()) {
        Raise(UTILS::DISKIO_READ, "RawDiskette::ReadSectors - the medium ends before the last sector");
    }
}

void RawDiskette::ReadThroughVwin32(DWORD first, std::span<std::byte> buffer) {
    _ABSREADWRITE packet{first, static_cast<WORD>(buffer.size() / boot_sector::size),
                         PtrToUlong(buffer.data())};
    DeviceRead(packet, static_cast<DWORD>(letter_ - 'A'));
}
