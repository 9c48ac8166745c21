// What Wine lacks of a diskette drive A:, whose files are a folder to it and whose sectors an image file.
// Functions of this test take the place of the component's imports before the host program loads it: they
// make one diskette of folder and image where sectors are read, and answer for the drive's media, for the
// disk services of Windows 95/98/Me, and for a diskette that is write-protected (a folder that nobody may
// write to). Everything else stays Wine's.
#include <windows.h>
#include <winioctl.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "Include/dos_device.h"

namespace {

constexpr char driveRoot[] = R"(A:\)";
constexpr char rawDrive[] = R"(\\.\A:)";
constexpr DWORD sectorSize = 512;
constexpr DWORD disketteSize = 2880 * sectorSize;

BOOL fail(DWORD error) {
    SetLastError(error);
    return FALSE;
}

// On a 64-bit machine a register holds half an address; the other half is that of a place nearby.
template <class T>
T* memoryAt(DWORD address, const void* nearby) {
    constexpr ULONG_PTR lowHalf = 0xFFFFFFFF;
    return reinterpret_cast<T*>((reinterpret_cast<ULONG_PTR>(nearby) & ~lowHalf) | address);
}

BOOL listMedia(void* out, DWORD outSize, DWORD* returned) {
    DISK_GEOMETRY media[2]{};
    if (outSize < sizeof media) return fail(ERROR_INSUFFICIENT_BUFFER);
    media[0] = {{.QuadPart = 80}, F3_720_512, 2, 9, sectorSize};
    media[1] = {{.QuadPart = 80}, F3_1Pt44_512, 2, 18, sectorSize};
    std::copy_n(media, 2, static_cast<DISK_GEOMETRY*>(out));
    *returned = sizeof media;
    return TRUE;
}

bool tellParameters(const DIOC_REGISTERS& request) {
    if (LOWORD(request.reg_EAX) != 0x440D || LOWORD(request.reg_ECX) != 0x0860 || request.reg_EBX != 1)
        return false;
    auto& parameters = *memoryAt<_DEVICEPARAMS>(request.reg_EDX, &request);
    parameters.deviceType = 7;
    parameters.cylinders = 80;
    parameters.bpb.bytesPerSector = sectorSize;
    parameters.bpb.sectorsPerTrack = 18;
    parameters.bpb.heads = 2;
    return true;
}

// Without an image Wine opens something else in its place; to Windows the drive is empty then.
HANDLE openRawDrive(DWORD access, DWORD sharing, DWORD flags) {
    const HANDLE drive = CreateFileA(rawDrive, access, sharing, nullptr, OPEN_EXISTING, flags, nullptr);
    if (drive == INVALID_HANDLE_VALUE || GetFileSize(drive, nullptr) == disketteSize) return drive;
    CloseHandle(drive);
    SetLastError(ERROR_NOT_READY);
    return INVALID_HANDLE_VALUE;
}

void putNumber(char* at, std::size_t value, int bytes) {
    for (; bytes > 0; --bytes, value >>= 8) *at++ = static_cast<char>(value);
}

void putFatEntry(char* fat, DWORD cluster, DWORD value) {
    char* const at = fat + cluster + cluster / 2;
    const DWORD both = static_cast<BYTE>(at[0]) | DWORD{static_cast<BYTE>(at[1])} << 8;
    putNumber(at, cluster % 2 == 0 ? (both & 0xF000) | value : (both & 0x000F) | value << 4, 2);
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The image file's boot sector with the folder's files behind it, one after the other, as a volume has them.
// Empty when there is no image.
std::string wholeDiskette() {
    std::string disk(disketteSize, '\0');
    const HANDLE drive = openRawDrive(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, 0);
    DWORD read = 0;
    if (drive == INVALID_HANDLE_VALUE) return {};
    ReadFile(drive, disk.data(), sectorSize, &read, nullptr);
    CloseHandle(drive);
    constexpr DWORD fatSize = 9 * sectorSize, rootAt = 19 * sectorSize, dataAt = 33 * sectorSize;
    char* const fat = &disk[sectorSize];
    char* entry = &disk[rootAt];
    DWORD cluster = 2;
    WIN32_FIND_DATAA found{};
    const HANDLE search = FindFirstFileA(R"(A:\*)", &found);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileA(search, &found)) {
        const std::string name = found.cFileName;
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 || name.size() > 12) continue;
        const std::string content = contentOf(driveRoot + name);
        const std::size_t dot = std::min(name.find('.'), name.size());
        std::fill_n(entry, 11, ' ');
        name.copy(entry, dot);
        if (dot < name.size()) name.copy(entry + 8, 3, dot + 1);
        putNumber(entry + 0x1A, content.empty() ? 0 : cluster, 2);
        putNumber(entry + 0x1C, content.size(), 4);
        entry += 32;
        content.copy(&disk[dataAt + (cluster - 2) * sectorSize], content.size());
        const auto end = cluster + static_cast<DWORD>((content.size() + sectorSize - 1) / sectorSize);
        for (; cluster < end; ++cluster) putFatEntry(fat, cluster, cluster + 1 < end ? cluster + 1 : 0xFFF);
    }
    FindClose(search);
    std::copy_n(fat, fatSize, fat + fatSize);
    return disk;
}

// A file of its own, which goes when it is closed.
HANDLE openWholeDiskette() {
    const std::string disk = wholeDiskette();
    if (disk.empty()) return INVALID_HANDLE_VALUE;
    char folder[MAX_PATH]{};
    char name[MAX_PATH]{};
    GetTempPathA(MAX_PATH, folder);
    GetTempFileNameA(folder, "dsk", 0, name);
    const HANDLE file = CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    DWORD written = 0;
    WriteFile(file, disk.data(), disketteSize, &written, nullptr);
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    return file;
}

const _ABSREADWRITE& packetOf(const DIOC_REGISTERS& request) {
    const char onStack = 0;
    return *memoryAt<const _ABSREADWRITE>(request.reg_EBX, &onStack);
}

bool readSectors(const DIOC_REGISTERS& request) {
    static const auto onHeap = std::make_unique<char>();
    const auto& packet = packetOf(request);
    const std::string disk = wholeDiskette();
    const DWORD first = packet.startSector * sectorSize;
    const DWORD size = packet.sectorCount * sectorSize;
    if (first + size > disk.size()) return false;
    disk.copy(memoryAt<char>(packet.buffer, onHeap.get()), size, first);
    return true;
}

bool writeSectors(const DIOC_REGISTERS& request) {
    if (request.reg_EAX != 0 || LOWORD(request.reg_ECX) != ABSOLUTE_PACKET_FORM) return false;
    const auto& packet = packetOf(request);
    const HANDLE drive = openRawDrive(GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, 0);
    if (drive == INVALID_HANDLE_VALUE) return false;
    const DWORD size = packet.sectorCount * sectorSize;
    DWORD written = 0;
    SetFilePointer(drive, static_cast<LONG>(packet.startSector * sectorSize), nullptr, FILE_BEGIN);
    const BOOL done =
        WriteFile(drive, memoryAt<const char>(packet.buffer, &request), size, &written, nullptr);
    CloseHandle(drive);
    return done && written == size;
}

BOOL WINAPI control(HANDLE device, DWORD code, void* in, DWORD inSize, void* out, DWORD outSize,
                    DWORD* returned, OVERLAPPED* overlapped) {
    if (code == IOCTL_DISK_GET_MEDIA_TYPES) return listMedia(out, outSize, returned);
    if (code < VWIN32_DIOC_DOS_IOCTL || code > VWIN32_DIOC_DOS_INT26)
        return DeviceIoControl(device, code, in, inSize, out, outSize, returned, overlapped);
    const auto& request = *static_cast<const DIOC_REGISTERS*>(in);
    auto& answer = *static_cast<DIOC_REGISTERS*>(out);
    answer = request;
    if (code == VWIN32_DIOC_DOS_INT26   ? writeSectors(request)
        : code == VWIN32_DIOC_DOS_INT25 ? readSectors(request)
                                        : tellParameters(request))
        answer.reg_Flags &= ~DIOC_CARRY_FLAG;
    *returned = sizeof answer;
    return TRUE;
}

// VWIN32 is there with and without a diskette; what it does needs no file of its own.
HANDLE WINAPI open(LPCSTR name, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security, DWORD disposition,
                   DWORD flags, HANDLE pattern) {
    if (std::string_view(name) == R"(\\.\VWIN32)")
        return CreateFileA("NUL", access, sharing, nullptr, OPEN_EXISTING, 0, nullptr);
    if (std::string_view(name) == rawDrive && access == GENERIC_READ) return openWholeDiskette();
    if (std::string_view(name) == rawDrive) return openRawDrive(access, sharing, flags);
    return CreateFileA(name, access, sharing, security, disposition, flags, pattern);
}

BOOL WINAPI setAttributes(LPCSTR name, DWORD attributes) {
    const DWORD ofDrive = GetFileAttributesA(driveRoot);
    const bool onDiskette = std::string_view(name).starts_with(driveRoot);
    if (onDiskette && ofDrive != INVALID_FILE_ATTRIBUTES && (ofDrive & FILE_ATTRIBUTE_READONLY) != 0)
        return fail(ERROR_WRITE_PROTECT);
    return SetFileAttributesA(name, attributes);
}

template <class T>
T* inModule(HMODULE module, ULONGLONG offset) {
    return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(module) + offset);
}

// Where the module keeps the address of a function that it imports by name; null when it imports none such.
ULONG_PTR* importedAddress(HMODULE module, const char* function) {
    const auto* const header =
        inModule<IMAGE_NT_HEADERS>(module, inModule<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
    const auto& imports = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (const auto* from = inModule<IMAGE_IMPORT_DESCRIPTOR>(module, imports.VirtualAddress);
         from->Name != 0; ++from) {
        const auto* name = inModule<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
        auto* address = inModule<IMAGE_THUNK_DATA>(module, from->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            const auto* const entry = inModule<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
            if (std::string_view(function) == reinterpret_cast<const char*>(entry->Name))
                return reinterpret_cast<ULONG_PTR*>(&address->u1.Function);
        }
    }
    return nullptr;
}

bool replace(HMODULE module, const char* function, const void* by) {
    ULONG_PTR* const address = importedAddress(module, function);
    DWORD protection = 0;
    if (!address || !VirtualProtect(address, sizeof *address, PAGE_READWRITE, &protection)) return false;
    *address = reinterpret_cast<ULONG_PTR>(by);
    return VirtualProtect(address, sizeof *address, protection, &protection) != FALSE;
}

std::string besideProgram(const char* name) {
    char program[MAX_PATH]{};
    GetModuleFileNameA(nullptr, program, MAX_PATH - 1);
    const std::string path = program;
    return path.substr(0, path.rfind('\\') + 1) + name;
}

// The component stays loaded from the program's first moment, so that every later use finds it changed.
[[maybe_unused]] const bool ready = [] {
    const HMODULE component = LoadLibraryA(besideProgram("QXCMendwell.dll").c_str());
    if (component && replace(component, "DeviceIoControl", reinterpret_cast<void*>(&control)) &&
        replace(component, "CreateFileA", reinterpret_cast<void*>(&open)) &&
        replace(component, "SetFileAttributesA", reinterpret_cast<void*>(&setAttributes)))
        return true;
    std::cerr << "the component's drive cannot be replaced\n";
    std::exit(EXIT_FAILURE);
}();

}  // namespace
