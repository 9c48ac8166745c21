#pragma once
#include <windows.h>

#include <cstddef>

// What MS-DOS and the VWIN32 device of Windows 95/98/Me exchange with a program: control codes, the register
// block and the packets, laid out as the device finds them in memory.

inline constexpr DWORD VWIN32_DIOC_DOS_IOCTL = 1;  // INT 21h function 44h
inline constexpr DWORD VWIN32_DIOC_DOS_INT25 = 2;  // absolute read
inline constexpr DWORD VWIN32_DIOC_DOS_INT26 = 3;  // absolute write
inline constexpr DWORD VWIN32_DIOC_DOS_INT13 = 4;  // BIOS disk services

// Answered by a virtual device driver opened by name, not by VWIN32.
inline constexpr DWORD VXD_BIOS_TRACK_FORMAT = 12;
inline constexpr DWORD VXD_BIOS_READ = 13;
inline constexpr DWORD VXD_BIOS_WRITE = 14;

// Bit of reg_Flags: set before a call, still set afterwards when the service failed; its error is then in AX.
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
    DWORD start_sector;  // 0 = boot sector
    WORD sector_count;
    DWORD buffer;  // 32-bit address, see PtrToUlong
};
static_assert(sizeof(_ABSREADWRITE) == 10 && offsetof(_ABSREADWRITE, sector_count) == 4 &&
              offsetof(_ABSREADWRITE, buffer) == 6);

// Request to and answer of the BIOS read and write of a virtual device driver.
struct _BIOSREADWRITEPARAMIN {
    BYTE drive;  // 0 = A
    BYTE cylinder;
    BYTE head;
    BYTE sector;  // 1 = first
    BYTE sector_count;
    DWORD buffer;  // 32-bit address
};
static_assert(sizeof(_BIOSREADWRITEPARAMIN) == 9 && offsetof(_BIOSREADWRITEPARAMIN, buffer) == 5);

// One sector of a track to be formatted, as the BIOS takes it.
struct _SECTOR_ID {
    BYTE cylinder;
    BYTE head;
    BYTE sector;     // 1 = first
    BYTE size_code;  // 128 << code bytes; 2 = 512
};
static_assert(sizeof(_SECTOR_ID) == 4);

// BIOS parameter block as MS-DOS reports it for a block device.
struct _DEVICEBPB {
    WORD bytes_per_sector;
    BYTE sectors_per_cluster;
    WORD reserved_sectors;
    BYTE fats;
    WORD root_entries;
    WORD total_sectors;
    BYTE media_descriptor;
    WORD sectors_per_fat;
    WORD sectors_per_track;
    WORD heads;
    DWORD hidden_sectors;
    DWORD huge_total_sectors;
    BYTE reserved[6];
};
static_assert(sizeof(_DEVICEBPB) == 31 && offsetof(_DEVICEBPB, sectors_per_track) == 13 &&
              offsetof(_DEVICEBPB, heads) == 15 && offsetof(_DEVICEBPB, hidden_sectors) == 17);

// Block-device parameters (INT 21h 440Dh, category 08h, minor code 60h).
struct _DEVICEPARAMS {
    BYTE special_functions;
    BYTE device_type;  // 7 = 1.44 MB
    WORD device_attributes;
    WORD cylinders;
    BYTE media_type;
    _DEVICEBPB bpb;
};
static_assert(sizeof(_DEVICEPARAMS) == 38 && offsetof(_DEVICEPARAMS, device_type) == 1 &&
              offsetof(_DEVICEPARAMS, cylinders) == 4 && offsetof(_DEVICEPARAMS, bpb) == 7);

#pragma pack(pop)

using DEVICEPARAMS = _DEVICEPARAMS;
