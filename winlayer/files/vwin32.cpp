#include "winlayer/files/vwin32.h"

#include <vector>

#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/diskette/dos_errors.h"
#include "winlayer/diskette/dos_registers.h"
#include "winlayer/files/drives.h"

namespace winlayer {
namespace {

// Control codes.
constexpr DWORD dosIoctl = 1;
constexpr DWORD dosInt26 = 3;
constexpr DWORD dosInt13 = 4;

// MS-DOS error codes of function 440Dh.
constexpr DWORD dosInvalidFunction = 0x01;
constexpr DWORD dosInvalidDrive = 0x0F;
constexpr DWORD dosNotReady = 0x15;
constexpr DWORD dosGeneralFailure = 0x1F;

constexpr WORD genericBlockDeviceRequest = 0x440D;
constexpr WORD getDeviceParameters = 0x0860;
constexpr WORD packetForm = 0xFFFF;
constexpr DWORD wrongForm = 0x0207;  // INT 25h/26h without a packet

// The device parameters: seven bytes, then the parameter block up to its 32-bit sector total.
constexpr std::size_t parametersSize = 32;
constexpr DWORD ofPresentMedium = 0x01;          // special functions: describe the medium, not the drive
constexpr DWORD removableWithChangeLine = 0x02;  // device attributes: bit 0 clear, bit 1 set

constexpr std::size_t packetSize = 10;

// Thrown when a service cannot even be tried: the command fails.
struct CommandError {
    DWORD code;
};

std::byte* memoryAt(DWORD address) {
    void* const memory = ULongToPtr(address);
    if (memory == nullptr) {
        throw CommandError{ERROR_INVALID_PARAMETER};
    }
    return static_cast<std::byte*>(memory);
}

void putParameters(std::span<std::byte> block, DWORD special, const DiskGeometry& drive,
                   const Fat12Layout& layout) {
    put8(block, 0, special);
    put8(block, 1, drive.dosDeviceType);
    put16(block, 2, removableWithChangeLine);
    put16(block, 4, drive.cylinders);
    put8(block, 6, 0);  // media type: the drive's usual one
    put16(block, 7, sectorSize);
    put8(block, 9, layout.sectorsPerCluster);
    put16(block, 10, layout.reservedSectors);
    put8(block, 12, layout.fats);
    put16(block, 13, layout.rootEntries);
    put16(block, 15, layout.totalSectors);
    put8(block, 17, layout.media);
    put16(block, 18, layout.sectorsPerFat);
    put16(block, 20, layout.sectorsPerTrack);
    put16(block, 22, layout.heads);
    put32(block, 24, layout.hiddenSectors);
    put32(block, 28, 0);
}

class Vwin32 : public OpenFile {
public:
    explicit Vwin32(const Drives& drives) : drives_(drives) {}

    Transfer read(std::uint64_t, std::span<std::byte>) override { return {0, ERROR_INVALID_FUNCTION}; }
    Transfer write(std::uint64_t, std::span<const std::byte>) override { return {0, ERROR_INVALID_FUNCTION}; }
    DWORD flush() override { return NO_ERROR; }
    DWORD size(std::uint64_t&) override { return ERROR_INVALID_FUNCTION; }
    DWORD resize(std::uint64_t) override { return ERROR_INVALID_FUNCTION; }
    DWORD control(DWORD code, std::span<const std::byte> in, std::span<std::byte> out,
                  DWORD& returned) override;

private:
    // The diskette drive of this number (0 = A); null if the letter has none.
    std::shared_ptr<DisketteDrive> drive(DWORD number) const;
    void ioctl(DosRegisters& registers) const;
    void absoluteTransfer(DosRegisters& registers, bool writing) const;
    void bios(DosRegisters& registers) const;
    void biosTransfer(DosRegisters& registers, DisketteDrive& drive, bool writing) const;
    void biosParameters(DosRegisters& registers, const DisketteDrive& drive) const;

    const Drives& drives_;
};

DWORD Vwin32::control(DWORD code, std::span<const std::byte> in, std::span<std::byte> out, DWORD& returned) {
    returned = 0;
    if (code < dosIoctl || code > dosInt13) {
        return ERROR_INVALID_FUNCTION;
    }
    if (in.size() != DosRegisters::size || out.size() != DosRegisters::size) {
        return ERROR_INVALID_PARAMETER;
    }
    DosRegisters registers = DosRegisters::load(in);
    try {
        if (code == dosIoctl) {
            ioctl(registers);
        } else if (code == dosInt13) {
            bios(registers);
        } else {
            absoluteTransfer(registers, code == dosInt26);
        }
    } catch (const CommandError& error) {
        return error.code;
    }
    registers.store(out);
    returned = DosRegisters::size;
    return NO_ERROR;
}

std::shared_ptr<DisketteDrive> Vwin32::drive(DWORD number) const {
    if (number >= 26) {
        return nullptr;
    }
    const Drive* const found = drives_.find(static_cast<char>('A' + number));
    return found == nullptr ? nullptr : std::dynamic_pointer_cast<DisketteDrive>(found->files);
}

void Vwin32::ioctl(DosRegisters& registers) const {
    if (LOWORD(registers.eax) != genericBlockDeviceRequest || LOWORD(registers.ecx) != getDeviceParameters) {
        return registers.fail(dosInvalidFunction);
    }
    const DWORD number = LOBYTE(LOWORD(registers.ebx));  // 0, the current drive, is never a diskette drive
    const auto found = number == 0 ? nullptr : drive(number - 1);
    if (!found) {
        return registers.fail(dosInvalidDrive);
    }
    const std::span<std::byte> block(memoryAt(registers.edx), parametersSize);
    const DWORD special = get8(block, 0);
    const DiskGeometry largest = found->supportedGeometries().front();
    Fat12Layout layout = standardLayout(largest.sectors());
    if ((special & ofPresentMedium) != 0) {
        const DWORD error = found->layout(layout);
        if (error != NO_ERROR) {
            return registers.fail(error == ERROR_NOT_READY ? dosNotReady : dosGeneralFailure);
        }
    }
    putParameters(block, special, largest, layout);
    registers.succeed(LOWORD(registers.eax));
}

void Vwin32::absoluteTransfer(DosRegisters& registers, bool writing) const {
    const auto found = drive(LOWORD(registers.eax));
    if (!found) {
        return registers.fail(absoluteDiskError(ERROR_INVALID_DRIVE));
    }
    if (LOWORD(registers.ecx) != packetForm) {
        return registers.fail(wrongForm);
    }
    const std::span<const std::byte> packet(memoryAt(registers.ebx), packetSize);
    const DWORD first = get32(packet, 0);
    const std::size_t bytes = std::size_t{get16(packet, 4)} * sectorSize;
    const std::span<std::byte> buffer(memoryAt(get32(packet, 6)), bytes);
    const DWORD error = writing ? found->writeSectors(first, buffer) : found->readSectors(first, buffer);
    if (error != NO_ERROR) {
        return registers.fail(absoluteDiskError(error));
    }
    registers.succeed(0);
}

void Vwin32::bios(DosRegisters& registers) const {
    const auto found = drive(LOBYTE(LOWORD(registers.edx)));
    const BYTE function = registers.ah();
    if (!found || !(function == 0x00 || function == 0x02 || function == 0x03 || function == 0x08)) {
        return registers.fail(DWORD{biosDiskError(ERROR_INVALID_DRIVE)} << 8);
    }
    if (function == 0x00) {
        return registers.succeed(0);
    }
    if (function == 0x08) {
        return biosParameters(registers, *found);
    }
    biosTransfer(registers, *found, function == 0x03);
}

// Sectors count from 1, and a transfer stays on its track, as in the controller.
void Vwin32::biosTransfer(DosRegisters& registers, DisketteDrive& drive, bool writing) const {
    DiskGeometry medium;
    DWORD error = drive.mediumGeometry(medium);
    const DWORD count = registers.al();
    if (error == NO_ERROR) {
        const WORD cx = LOWORD(registers.ecx);
        const DWORD cylinder = HIBYTE(cx) | (DWORD{cx} & 0xC0) << 2;
        const DWORD sector = cx & 0x3F;
        const DWORD head = HIBYTE(LOWORD(registers.edx));
        if (cylinder >= medium.cylinders || head >= medium.heads || sector == 0 || count == 0 ||
            sector - 1 + count > medium.sectorsPerTrack) {
            error = ERROR_SECTOR_NOT_FOUND;
        } else {
            const DWORD first = (cylinder * medium.heads + head) * medium.sectorsPerTrack + sector - 1;
            const std::span<std::byte> buffer(memoryAt(registers.ebx), std::size_t{count} * sectorSize);
            error = writing ? drive.writeSectors(first, buffer) : drive.readSectors(first, buffer);
        }
    }
    if (error != NO_ERROR) {
        return registers.fail(DWORD{biosDiskError(error)} << 8);
    }
    registers.succeed(count);
}

void Vwin32::biosParameters(DosRegisters& registers, const DisketteDrive& drive) const {
    const DiskGeometry largest = drive.supportedGeometries().front();
    const DWORD lastCylinder = largest.cylinders - 1;
    DWORD drives = 0;
    while (this->drive(drives)) {
        ++drives;
    }
    registers.ebx = largest.biosDriveType;
    registers.ecx = lastCylinder << 8 | largest.sectorsPerTrack;
    registers.edx = (largest.heads - 1) << 8 | drives;
    registers.succeed(0);
}

}  // namespace

std::unique_ptr<OpenFile> openVwin32(const Drives& drives) {
    return std::make_unique<Vwin32>(drives);
}

}  // namespace winlayer
