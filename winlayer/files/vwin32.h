#pragma once
#include <memory>

#include "winlayer/file_system/file_system.h"

namespace winlayer {

class Drives;

// The device \\.\VWIN32 of Windows 95, 98 and Me: access to the MS-DOS disk services. It has four control
// codes, each with a 28-byte register block (EBX, EDX, ECX, EAX, EDI, ESI, Flags) in and out:
//   1  INT 21h, AX = 440Dh: category 08h, minor code 60h (get device parameters); EBX = drive, 1 = A
//   2  INT 25h: absolute read, ECX = FFFFh and a packet at EBX; EAX = drive, 0 = A
//   3  INT 26h: absolute write, likewise
//   4  INT 13h: AH = 00h reset, 02h read, 03h write, 08h drive parameters; DL = drive, buffer at EBX
// When a service fails, the command still succeeds, with the carry flag set in Flags and the service's error
// code in AX (INT 13h: in AH). The command itself fails with ERROR_INVALID_FUNCTION for another code and with
// ERROR_INVALID_PARAMETER for a block of the wrong size or an address that PtrToUlong never returned. The
// drives must outlive the device, which refers to them.
std::unique_ptr<OpenFile> openVwin32(const Drives& drives);

}  // namespace winlayer
