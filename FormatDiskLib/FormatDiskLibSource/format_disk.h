#pragma once
#include <windows.h>
#include <winioctl.h>

#include <array>
#include <memory>
#include <string>

#include "CSyncObject.h"
#include "UtilsList.h"
#include "UtilsString.h"
#include "diskio.h"
#include "std_exception.h"

// The geometry of a drive's medium: request and result of the drive scan. The fields of DISK_GEOMETRY, with
// the media type last.
struct MediaGeometry {
    LONGLONG cylinders = 0;
    DWORD tracksPerCylinder = 0;  // heads
    DWORD sectorsPerTrack = 0;
    DWORD bytesPerSector = 0;
    MEDIA_TYPE mediaType = Unknown;

    bool operator==(const MediaGeometry&) const = default;
};
static_assert(sizeof(MediaGeometry) == 24);

// A failure of the diskette drive or of the drive scan.
class FormatDiskException : public UTILS::ReportException<FormatDiskException> {
public:
    static constexpr char class_name[] = "class FormatDiskException";
    using ReportException::ReportException;
};

// Its type codes.
inline constexpr DWORD FORMATDISK_NAME = 8;      // a drive name that is too short
inline constexpr DWORD FORMATDISK_NO_DRIVE = 9;  // no drive A:
inline constexpr DWORD FORMATDISK_MEDIUM = 10;   // no drive with the wanted medium
inline constexpr DWORD FORMATDISK_SECTOR = 11;   // a sector that cannot be written

// The diskette drive of a disk-making run: finds it, reads its geometry, writes its boot sector. It does not
// format: the diskette already has its file system. While an object exists, the process shows no system error
// boxes for an empty drive. Status and errors go to the virtual hooks, which do nothing here. The object owns
// its device handle and cannot be copied. Thread rule: one thread at a time.
class FormatDisk : public UTILS::DiskIO {
public:
    // Kinds of SHOW_ERROR.
    static constexpr int generalError = 100;
    static constexpr int driveError = 200;
    static constexpr int unexpectedError = 300;

    // Drive types for GetLogicalDrives; they can be combined.
    static constexpr DWORD removableDrives = 0x4000000;
    static constexpr DWORD fixedDrives = 0x2000000;
    static constexpr DWORD remoteDrives = 0x1000000;
    static constexpr DWORD ramDisks = 0x200000;
    static constexpr DWORD otherDrives = 0x100000;  // unknown, without a root, or for compact discs

    // Opens nothing. The selector chooses the value that get_filesystem returns: 0 gives 3 (a 1.44 MB
    // diskette), 1 gives 2, 2 gives 6, any other 3.
    explicit FormatDisk(int selector);
    ~FormatDisk() override;
    FormatDisk(const FormatDisk&) = delete;
    FormatDisk& operator=(const FormatDisk&) = delete;

    // Sends a device command. First closes an open device and opens the device path if the reopen flag is set
    // (a derived class may clear it) or nothing is open. Throws as DiskIO's operations do.
    void DeviceControl(DWORD code, void* const in, DWORD inSize, void* out, DWORD outSize) override;

    // Stores the window that owns progress messages.
    virtual void GET_MESSAGE_WND(HWND& window);
    // Reports an error; kind is one of the three above.
    virtual void SHOW_ERROR(int errorNumber, int kind, const char* text);
    // Shows a status line; a pause other than 0 requests time to read it.
    virtual void UPDATE_WINDOW(const char* text, int pause);
    // Moves the progress display: to `value` if absolute is not 0; otherwise forward by `value`, where 0
    // means its default step.
    virtual void MoveSlider(int absolute, int value);
    // Translates a fixed message; here returns the message itself.
    virtual const char* TRANSLATE_TEXT(const char* text);
    // For a derived class's own use; nothing calls it. Result: 0.
    virtual DWORD SpareHook(DWORD value);
    // Signals the object's event, as CEvent::Lock does.
    virtual int LockEvent();
    // The handle of that event, owned by the object.
    virtual HANDLE GetEventHandle();

    // Clears names, paths and the boot sector image; suppresses the system's error boxes.
    void ResetDrive();

    // Fills the drive list with the roots ("A:\") of all drives whose type is in the mask. The scan starts at
    // A and stops at the first letter without a drive.
    // Throws FormatDiskException type 9 if there is no drive A; the list is then empty.
    void GetLogicalDrives(DWORD typeMask);

    // Selects a drive by its root; it is opened by its letter. Result: 1.
    // Throws FormatDiskException type 8 for a name of fewer than 2 characters and then changes nothing.
    int SetupDrive(const char* name);

    // Sets the path that device commands open. byLetter 0: the physical drive; no change if its number is 0.
    // Otherwise the drive's letter or, off NT, the named device if deviceName is not null.
    void BuildDevicePath(int byLetter, const char* deviceName);

    // Opens the drive and compares its medium (NT: every medium that it supports) with the wanted one. The
    // drive geometry is then what was read; on NT only if it matches. Result: 1.
    // A failure is reported with kind 200 and rethrown.
    int QueryDriveGeometry(MediaGeometry wanted);

    // Finds the first drive with the wanted medium. Result: its root, valid until the next SetupDrive; an
    // empty text if there is none or a drive fails. The device stays open.
    const char* GetFirstDriveOfType(MediaGeometry wanted);

    // Stores a copy of 512 bytes, the sector size of the only supported file system; `size` is ignored.
    void SetBootSectorImage(const unsigned char* image, DWORD size);

    // Writes the stored copy to sector 0 of the drive found by the scan. Result: 1, or 0 after a failure that
    // has been reported. Only an exception not derived from std::exception is rethrown, after a report of
    // kind 300.
    int WriteBootSector();

protected:
    static constexpr std::size_t sectorSize = 512;

    UTILS::UtilsString driveName_;
    DWORD physicalDrive_ = 0;  // 0: opened by letter; off NT 0 = A
    UTILS::UtilsString devicePath_;
    DWORD reopen_ = 1;
    std::unique_ptr<std::array<unsigned char, sectorSize>> bootSectorImage_;
    MediaGeometry driveGeometry_;
    DISK_GEOMETRY nativeGeometry_{};
    DEVICEPARAMS deviceParameters_{};
    DIOC_REGISTERS input_{};
    DIOC_REGISTERS output_{};
    UTILS::UtilsStringList driveList_;
    UTILS::UtilsString conditionText_;
    UTILS::CCriticalSection imageLock_;
    UTILS::CEvent event_;

private:
    [[noreturn]] void Fail(DWORD type, DWORD errorNumber, const std::string& condition,
                           int line = __builtin_LINE());
    void Reopen();
    void ChooseDrive(const MediaGeometry& wanted);
    void ReadGeometry(const MediaGeometry& wanted);
    void ReadDeviceParameters();
    void ReadNativeGeometry(const MediaGeometry& wanted);
    void TakeIfWanted(const DISK_GEOMETRY& geometry, const MediaGeometry& wanted);
    void WriteThroughVwin32();
    void WriteThroughDevice();
};
