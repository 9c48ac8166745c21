#include "format_disk.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "CUtilsPath.h"
#include "ansi_literal.h"

using namespace UTILS::literals;

namespace {

constexpr char sourceFile[] = R"(FormatDiskLib\FormatDiskLibSource\format_disk)";
constexpr char vwin32[] = R"(\\.\VWIN32)";
constexpr DWORD mediaTypesSize = 0x3000;  // bytes of the reply that lists a drive's media

UTILS::m_FilesystemTypes fileSystem(int selector) {
    switch (selector) {
        case 1:
            return static_cast<UTILS::m_FilesystemTypes>(2);
        case 2:
            return static_cast<UTILS::m_FilesystemTypes>(6);
        default:
            return UTILS::FILESYSTEM_FAT12_FLOPPY;
    }
}

DWORD maskOf(UINT driveType) {
    switch (driveType) {
        case DRIVE_REMOVABLE:
            return FormatDisk::removableDrives;
        case DRIVE_FIXED:
            return FormatDisk::fixedDrives;
        case DRIVE_REMOTE:
            return FormatDisk::remoteDrives;
        case DRIVE_RAMDISK:
            return FormatDisk::ramDisks;
        default:
            return FormatDisk::otherDrives;
    }
}

// Converts the device type of an MS-DOS parameter block to a Windows media type.
MEDIA_TYPE mediaOf(BYTE deviceType) {
    switch (deviceType) {
        case 0:
            return F5_360_512;
        case 1:
            return F5_1Pt2_512;
        case 2:
            return F3_720_512;
        case 3:
        case 4:
            return Unknown;
        case 5:
            return FixedMedia;
        case 7:
            return F3_1Pt44_512;
        case 9:
            return F3_2Pt88_512;
        default:
            return RemovableMedia;
    }
}

MediaGeometry reordered(const DISK_GEOMETRY& geometry) {
    return {geometry.Cylinders.QuadPart, geometry.TracksPerCylinder, geometry.SectorsPerTrack,
            geometry.BytesPerSector, geometry.MediaType};
}

bool hasAtLeastTwoCharacters(const char* name) {
    return name != nullptr && name[0] != '\0' && name[1] != '\0';
}

}  // namespace

FormatDisk::FormatDisk(int selector) {
    ResetDrive();
    filesystem_ = fileSystem(selector);
}

FormatDisk::~FormatDisk() {
    const UTILS::SectionGuard guard(imageLock_);
    bootSectorImage_.reset();
}

void FormatDisk::GET_MESSAGE_WND(HWND&) {}
void FormatDisk::SHOW_ERROR(int, int, const char*) {}
void FormatDisk::UPDATE_WINDOW(const char*, int) {}
void FormatDisk::MoveSlider(int, int) {}

const char* FormatDisk::TRANSLATE_TEXT(const char* text) {
    return text;
}

DWORD FormatDisk::SpareHook(DWORD) {
    return 0;
}

int FormatDisk::LockEvent() {
    return event_.Lock();
}

HANDLE FormatDisk::GetEventHandle() {
    return event_.GetHandle();
}

void FormatDisk::ResetDrive() {
    {
        const UTILS::SectionGuard guard(imageLock_);
        driveName_ = "";
        devicePath_ = "";
        conditionText_ = "";
        reopen_ = 1;
        physicalDrive_ = 0;
        bootSectorImage_.reset();
    }
    ResetErrorMode();  // so that a second reset still restores the original mode
    SetErrorMode();
}

void FormatDisk::Fail(DWORD type, DWORD errorNumber, const std::string& condition, int line) {
    conditionText_ = condition.c_str();
    throw FormatDiskException(type, errorNumber, static_cast<DWORD>(line), sourceFile, conditionText_);
}

void FormatDisk::DeviceControl(DWORD code, void* const in, DWORD inSize, void* out, DWORD outSize) {
    if (reopen_ != 0 || !IsOpen()) {
        Reopen();
    }
    DiskIO::DeviceControl(code, in, inSize, out, outSize);
}

// Close clears the saved error mode, which this object must keep until its end.
void FormatDisk::Reopen() {
    if (IsOpen()) {
        const DWORD savedErrorMode = savedErrorMode_;
        Close();
        savedErrorMode_ = savedErrorMode;
    }
    Open(devicePath_.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING,
         0);
}

void FormatDisk::GetLogicalDrives(DWORD typeMask) {
    driveList_.RemoveAllStrings();
    const DWORD letters = ::GetLogicalDrives();
    unsigned counted = 0;
    for (; counted < 26 && (letters >> counted & 1) != 0; ++counted) {
        const std::string root = {static_cast<char>('A' + counted), ':', '\\'};
        if ((maskOf(GetDriveTypeA(root.c_str())) & typeMask) != 0) {
            driveList_.AddString(root.c_str());
        }
    }
    if (counted == 0) {
        Fail(FORMATDISK_NO_DRIVE, 0,
             "FormatDisk::GetLogicalDrives - Drive scan found no device of specified type");
    }
}

int FormatDisk::SetupDrive(const char* name) {
    if (!hasAtLeastTwoCharacters(name)) {
        Fail(FORMATDISK_NAME, 0,
             std::string("FormatDisk::SetupDrive - Input drive name ") + (name != nullptr ? name : "") +
                 "  is less than 2 bytes long.");
    }
    driveName_ = name;
    physicalDrive_ = 0;
    return 1;
}

void FormatDisk::BuildDevicePath(int byLetter, const char* deviceName) {
    if (byLetter == 0) {
        if (physicalDrive_ != 0) {
            devicePath_ = ("\\\\.\\PHYSICALDRIVE" + std::to_string(physicalDrive_)).c_str();
        }
    } else if (hasAtLeastTwoCharacters(driveName_.c_str())) {
        const bool letter = deviceName == nullptr || IsNT();
        const std::string device = letter ? std::string(driveName_.c_str(), 2) : deviceName;
        devicePath_ = ("\\\\.\\" + device).c_str();
    }
}

int FormatDisk::QueryDriveGeometry(MediaGeometry wanted) {
    try {
        ReadGeometry(wanted);
        return 1;
    } catch (const UTILS::DiskIoException& failure) {
        SHOW_ERROR(static_cast<int>(failure.m_error_number), driveError,
                   TRANSLATE_TEXT("Fehler bei der Öffnung eines Geräts"_ansi));
        throw;
    } catch (const FormatDiskException& failure) {
        SHOW_ERROR(static_cast<int>(failure.m_error_number), driveError, TRANSLATE_TEXT("Zugriffsfehler"));
        throw;
    } catch (const std::exception&) {
        SHOW_ERROR(static_cast<int>(GetLastError()), driveError, TRANSLATE_TEXT("Zugriffsfehler"));
        throw;
    }
}

void FormatDisk::ReadGeometry(const MediaGeometry& wanted) {
    if (IsNT()) {
        BuildDevicePath(physicalDrive_ == 0 ? 1 : 0, nullptr);
        ReadNativeGeometry(wanted);
        writeSize_ = static_cast<WORD>(nativeGeometry_.BytesPerSector);
    } else {
        devicePath_ = vwin32;
        ReadDeviceParameters();
        writeSize_ = static_cast<WORD>(driveGeometry_.bytesPerSector);
    }
}

// MS-DOS function 440Dh, "get device parameters". The block is cleared first: a failed service leaves it
// unchanged, and the previous drive's parameters must not be mistaken for the answer.
void FormatDisk::ReadDeviceParameters() {
    deviceParameters_ = {};
    input_ = {};
    input_.reg_EAX = 0x440D;
    input_.reg_ECX = 0x0860;
    input_.reg_EBX = physicalDrive_ + 1;
    input_.reg_EDX = PtrToUlong(&deviceParameters_);
    input_.reg_Flags = DIOC_CARRY_FLAG;
    output_ = {};
    DeviceControl(VWIN32_DIOC_DOS_IOCTL, &input_, sizeof input_, &output_, sizeof output_);
    driveGeometry_ = {deviceParameters_.cylinders, deviceParameters_.bpb.heads,
                      deviceParameters_.bpb.sectorsPerTrack, deviceParameters_.bpb.bytesPerSector,
                      mediaOf(deviceParameters_.deviceType)};
}

void FormatDisk::ReadNativeGeometry(const MediaGeometry& wanted) {
    if (wanted.mediaType >= RemovableMedia) {
        DISK_GEOMETRY present{};
        DeviceControl(IOCTL_DISK_GET_DRIVE_GEOMETRY, nullptr, 0, &present, sizeof present);
        TakeIfWanted(present, wanted);
        return;
    }
    std::vector<DISK_GEOMETRY> media(mediaTypesSize / sizeof(DISK_GEOMETRY));
    DeviceControl(IOCTL_DISK_GET_MEDIA_TYPES, nullptr, 0, media.data(), mediaTypesSize);
    media.resize(std::min<std::size_t>(media.size(), bytesRead_ / sizeof(DISK_GEOMETRY)));
    const auto found = std::find_if(media.begin(), media.end(), [&](const DISK_GEOMETRY& geometry) {
        return reordered(geometry) == wanted;
    });
    if (found != media.end()) {
        TakeIfWanted(*found, wanted);
    }
}

void FormatDisk::TakeIfWanted(const DISK_GEOMETRY& geometry, const MediaGeometry& wanted) {
    if (reordered(geometry) == wanted) {
        nativeGeometry_ = geometry;
        driveGeometry_ = wanted;
    }
}

const char* FormatDisk::GetFirstDriveOfType(MediaGeometry wanted) {
    nativeGeometry_ = {};
    driveGeometry_ = {};  // the result of an earlier scan must not count for this one
    UPDATE_WINDOW("Diskettenlaufwerke werden gesucht...", 1);
    try {
        ChooseDrive(wanted);
    } catch (const std::exception&) {
        return "";
    }
    UTILS::UtilsString drive;
    UTILS::CUtilsPath(driveName_, 0, 0, 0).GetDrive(drive);
    UPDATE_WINDOW(("Laufwerk " + std::string(drive.c_str()) + " gefunden").c_str(), 1);
    return driveName_.c_str();
}

void FormatDisk::ChooseDrive(const MediaGeometry& wanted) {
    GetLogicalDrives(wanted.mediaType > RemovableMedia ? fixedDrives : removableDrives);
    const auto count = driveList_.GetNumberOfStrings();
    bool found = false;
    for (decltype(driveList_.GetNumberOfStrings()) i = 0; i < count && !found; ++i) {
        SetupDrive(driveList_.Retrieve(i));
        if (!IsNT()) {
            physicalDrive_ = static_cast<DWORD>(driveName_.c_str()[0] - 'A');
        }
        QueryDriveGeometry(wanted);
        found = driveGeometry_ == wanted;
    }
    driveList_.RemoveAllStrings();
    if (!found) {
        Fail(FORMATDISK_MEDIUM, 0, "FormatDisk::GetFirstDriveOfType - Cannot find specified media type");
    }
}

void FormatDisk::SetBootSectorImage(const unsigned char* image, DWORD) {
    auto copy = std::make_unique<std::array<unsigned char, sectorSize>>();
    std::copy_n(image, sectorSize, copy->begin());
    bootSectorImage_ = std::move(copy);
}

int FormatDisk::WriteBootSector() {
    constexpr char text[] = "Fehler beim Schreiben des Bootsektors";
    try {
        if (bootSectorImage_ == nullptr) {
            throw std::logic_error("no boot sector image");
        }
        if (IsNT()) {
            WriteThroughDevice();
        } else {
            WriteThroughVwin32();
        }
        return 1;
    } catch (const std::exception&) {
        SHOW_ERROR(0, generalError, TRANSLATE_TEXT(text));
        return 0;
    } catch (...) {
        SHOW_ERROR(0, unexpectedError, TRANSLATE_TEXT(text));
        throw;
    }
}

void FormatDisk::WriteThroughVwin32() {
    _ABSREADWRITE packet{0, 1, PtrToUlong(bootSectorImage_->data())};
    input_ = {};
    input_.reg_EAX = physicalDrive_;
    input_.reg_EBX = PtrToUlong(&packet);
    input_.reg_ECX = ABSOLUTE_PACKET_FORM;
    input_.reg_Flags = DIOC_CARRY_FLAG;
    output_ = {};
    DeviceControl(VWIN32_DIOC_DOS_INT26, &input_, sizeof input_, &output_, sizeof output_);
    if ((output_.reg_Flags & DIOC_CARRY_FLAG) != 0) {
        error_ = LOWORD(output_.reg_EAX);
        Fail(FORMATDISK_SECTOR, error_,
             "FormatDisk::WriteBootSector - VWIN32_DIOC_DOS_INT26, Disk:  " + std::to_string(physicalDrive_) +
                 "; Sector:  " + std::to_string(packet.startSector));
    }
}

void FormatDisk::WriteThroughDevice() {
    SetFilePointer(LARGE_INTEGER{}, FILE_BEGIN);
    Write(bootSectorImage_->data(), std::min<DWORD>(writeSize_, sectorSize));
}
