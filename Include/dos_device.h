#pragma once
#include <windows.h>

#include <cstddef>

// The interface of MS-DOS and the VWIN32 device of Windows 95/98/Me: control codes, the register block and
// the packets, in their layout in memory.

inline constexpr DWORD VWIN32_DIOC_DOS_IOCTL = 1;  // INT 21h function 44h
inline constexpr DWORD VWIN32_DIOC_DOS_INT25 = 2;  // absolute read
inline constexpr DWORD VWIN32_DIOC_DOS_INT26 = 3;  // absolute write
inline constexpr DWORD VWIN32_DIOC_DOS_INT13 = 4;  // BIOS disk services

// Handled by a virtual device driver opened by name, not by VWIN32.
inline constexpr DWORD VXD_BIOS_TRACK_FORMAT = 12;
inline constexpr DWORD VXD_BIOS_READ = 13;
inline constexpr DWORD VXD_BIOS_WRITE = 14;

// Bit of reg_Flags: set before a call, still set afterwards if the service failed; its error is then in AX.
inline constexpr DWORD DIOC_CARRY_FLAG = 1;

// ECX of INT 25h and 26h when EBX is the address of an _ABSREADWRITE packet.
inline constexpr DWORD ABSOLUTE_PACKET_FORM = 0xFFFF;

struct DIOC_REGISTERS {
    DWORD reg_EBX;
    DWORD reg_EDX;
    DWORD reg_ECX;
    DWORD reg_EAX;
    DWORD reg_EDI;
    DWORD reg_ESI;
    DWORD reg_Flags;
};
static_assert(sizeof(DIOC_REGISTERS) == 28 && offsetof(DIOC_REGISTERS, reg_EAX) == 12 &&
              offsetof(DIOC_REGISTERS, reg_Flags) == 24);

#pragma pack(push, 1)

// Packet of an absolute disk read or write.
struct _ABSREADWRITE {
    DWORD startSector;  // 0 = boot sector
    WORD sectorCount;
    DWORD buffer;  // 32-bit address, see PtrToUlong
};
static_assert(sizeof(_ABSREADWRITE) == 10 && offsetof(_ABSREADWRITE, sectorCount) == 4 &&
              offsetof(_ABSREADWRITE, buffer) == 6);

// Request and reply of the BIOS read and write of a virtual device driver.
struct _BIOSREADWRITEPARAMIN {
    BYTE drive;  // 0 = A
    BYTE cylinder;
    BYTE head;
    BYTE sector;  // 1 = first
    BYTE sectorCount;
    DWORD buffer;  // 32-bit address
};
static_assert(sizeof(_BIOSREADWRITEPARAMIN) == 9 && offsetof(_BIOSREADWRITEPARAMIN, buffer) == 5);

// One sector of a track to be formatted, as the BIOS expects it.
struct _SECTOR_ID {
    BYTE cylinder;
    BYTE head;
    BYTE sector;    // 1 = first
    BYTE sizeCode;  // 128 << code bytes; 2 = 512
};
static_assert(sizeof(_SECTOR_ID) == 4);

// BIOS parameter block as MS-DOS reports it for a block device.
struct _DEVICEBPB {
    WORD bytesPerSector;
    BYTE sectorsPerCluster;
    WORD reservedSectors;
    BYTE fats;
    WORD rootEntries;
    WORD totalSectors;
    BYTE mediaDescriptor;
    WORD sectorsPerFat;
    WORD sectorsPerTrack;
    WORD heads;
    DWORD hiddenSectors;
    DWORD hugeTotalSectors;
    BYTE reserved[6];
};
static_assert(sizeof(_DEVICEBPB) == 31 && offsetof(_DEVICEBPB, sectorsPerTrack) == 13 &&
              offsetof(_DEVICEBPB, heads) == 15 && offsetof(_DEVICEBPB, hiddenSectors) == 17);

// Block-device parameters (INT 21h 440Dh, category 08h, minor code 60h).
struct _DEVICEPARAMS {
    BYTE specialFunctions;
    BYTE deviceType;  // 7 = 1.44 MB
    WORD deviceAttributes;
    WORD cylinders;
    BYTE mediaType;
    _DEVICEBPB bpb;
};
static_assert(sizeof(_DEVICEPARAMS) == 38 && offsetof(_DEVICEPARAMS, deviceType) == 1 &&
              offsetof(_DEVICEPARAMS, cylinders) == 4 && offsetof(_DEVICEPARAMS, bpb) == 7);

#pragma pack(pop)

using DEVICEPARAMS = _DEVICEPARAMS;
