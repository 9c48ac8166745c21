#include <cstring>

#include "diskio.h"

// Device commands, and the MS-DOS and BIOS services of Windows 95/98/Me.

namespace UTILS {

namespace {

constexpr DWORD registersSize = sizeof(DIOC_REGISTERS);
constexpr DWORD trackReplySize = 518;
constexpr DWORD trackSectors = 18;  // of a 1.44 MB diskette

unsigned ByteAt(const void* block, std::size_t offset) {
    return static_cast<const unsigned char*>(block)[offset];
}

// A failed service leaves its own error in its reply, if the reply has a known layout.
DWORD ServiceError(DWORD code, const void* out, DWORD outSize) {
    constexpr std::size_t ax = offsetof(DIOC_REGISTERS, reg_EAX);
    const DWORD system = ::GetLastError();
    if (out == nullptr) return system;
    if (outSize == trackReplySize) return ByteAt(out, trackReplySize - 1);
    if (outSize != registersSize) return system;
    if (code == VWIN32_DIOC_DOS_INT13) return ByteAt(out, ax + 1);
    return ByteAt(out, ax) | ByteAt(out, ax + 1) << 8;
}

}  // namespace

void DiskIO::DeviceControl(DWORD code, void* const in, DWORD inSize, void* out, DWORD outSize) {
    if (::DeviceIoControl(handle_.get(), code, in, inSize, out, outSize, &bytesRead_, nullptr)) return;
    error_ = ServiceError(code, out, outSize);
    Raise(DISKIO_DEVICE, "DiskIO::DeviceControl - Cannot Execute Device Cmd " + std::to_string(code));
}

void DiskIO::RefuseOnNT(const char* operation, int line) {
    if (!nt_) return;
    error_ = ERROR_APP_WRONG_OS;
    Raise(DISKIO_WRONG_SYSTEM,
          std::string(operation) + " - This function requires standard Windows.  Cannot Execute on NT.",
          line);
}

bool DiskIO::AbsoluteTransfer(_ABSREADWRITE& packet, DWORD drive, DWORD code) {
    DIOC_REGISTERS in{};
    DIOC_REGISTERS out{};
    in.reg_EBX = PtrToUlong(&packet);
    in.reg_ECX = ABSOLUTE_PACKET_FORM;
    in.reg_EAX = drive;
    in.reg_Flags = DIOC_CARRY_FLAG;
    DeviceControl(code, &in, registersSize, &out, registersSize);
    if ((out.reg_Flags & DIOC_CARRY_FLAG) == 0) return true;
    error_ = LOWORD(out.reg_EAX);
    return false;
}

void DiskIO::DeviceRead(_ABSREADWRITE& packet, DWORD drive) {
    RefuseOnNT("DiskIO::DeviceRead");
    if (AbsoluteTransfer(packet, drive, VWIN32_DIOC_DOS_INT25)) return;
    Raise(DISKIO_SECTOR, "DiskIO::DeviceRead - VWIN32_DIOC_DOS_INT25, Disk:  " + std::to_string(drive) +
                             "; sector:  " + std::to_string(DWORD{packet.startSector}) +
                             "; sectors to read:  " + std::to_string(int{packet.sectorCount}));
}

void DiskIO::DeviceWrite(_ABSREADWRITE& packet, DWORD drive) {
    RefuseOnNT("DiskIO::DeviceWrite");
    if (AbsoluteTransfer(packet, drive, VWIN32_DIOC_DOS_INT26)) return;
    Raise(DISKIO_SECTOR, "DiskIO::DeviceWrite - VWIN32_DIOC_DOS_INT26, Disk:  " + std::to_string(drive) +
                             "; sector:  " + std::to_string(DWORD{packet.startSector}) +
                             "; sectors to write:  " + std::to_string(int{packet.sectorCount}));
}

void DiskIO::DeviceRead(_BIOSREADWRITEPARAMIN in, _BIOSREADWRITEPARAMIN& out) {
    DeviceControl(VXD_BIOS_READ, &in, sizeof in, &out, sizeof out);
}

void DiskIO::DeviceWrite(_BIOSREADWRITEPARAMIN in, _BIOSREADWRITEPARAMIN& out) {
    DeviceControl(VXD_BIOS_WRITE, &in, sizeof in, &out, sizeof out);
}

void DiskIO::BiosTrackFormat(const _SECTOR_ID* ids, DWORD drive, DWORD cylinder, DWORD head) {
    RefuseOnNT("DiskIO::BiosTrackFormat");
    const DWORD table = PtrToUlong(ids);
    unsigned char request[11] = {LOBYTE(drive), LOBYTE(cylinder), LOBYTE(head)};
    for (unsigned i = 0; i < 4; ++i) {
        request[3 + i] = static_cast<unsigned char>(table >> (8 * i));
        request[7 + i] = static_cast<unsigned char>(trackSectors >> (8 * i));
    }
    unsigned char reply[trackReplySize] = {};
    DeviceControl(VXD_BIOS_TRACK_FORMAT, request, sizeof request, reply, sizeof reply);
}

}  // namespace UTILS
