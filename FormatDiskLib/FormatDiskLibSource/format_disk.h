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

// What a drive's medium looks like: request and answer of the drive scan. The fields of DISK_GEOMETRY with
// the media type moved to the end.
struct MediaGeometry {
    LONGLONG cylinders = 0;
    DWORD tracksPerCylinder = 0;  // heads
    DWORD sectorsPerTrack = 0;
    DWORD bytesPerSector = 0;
    MEDIA_TYPE mediaType = Unknown;

    bool operator==(const MediaGeometry&) const = default;
};
static_assert(sizeof(MediaGeometry) == 24);

// A failure of the diskette drive or of its search.
class FormatDiskException : public UTILS::ReportException<FormatDiskException> {
public:
    static constexpr char class_name[] = "class FormatDiskException";
    using ReportException::ReportException;
};

// Its type codes.
inline constexpr DWORD FORMATDISK_NAME = 8;      // a drive name that is too short
inline constexpr DWORD FORMATDISK_NO_DRIVE = 9;  // no drive letter at all
inline constexpr DWORD FORMATDISK_MEDIUM = 10;   // no drive with the wanted medium
inline constexpr DWORD FORMATDISK_SECTOR = 11;   // a sector that cannot be written

// One diskette drive for the time of a disk-making run: finds it, reads its geometry, writes its boot sector.
// It does not format: the diskette carries its file system already. While an object exists the process shows
// no system boxes for an empty drive. What there is to tell goes through the virtual hooks, which do nothing
// here. The object owns its device handle and is not copied. Thread rule: one thread at a time.
class FormatDisk : public UTILS::DiskIO {
public:
    // Kinds of SHOW_ERROR.
    static constexpr int generalError = 100;
    static constexpr int driveError = 200;
    static constexpr int unexpectedError = 300;

    // Drive types that GetLogicalDrives can be asked for; they can be combined.
    static constexpr DWORD removableDrives = 0x4000000;
    static constexpr DWORD fixedDrives = 0x2000000;
    static constexpr DWORD remoteDrives = 0x1000000;
    static constexpr DWORD ramDisks = 0x200000;
    static constexpr DWORD otherDrives = 0x100000;  // unknown, without a root, or for compact discs

    // Opens nothing. The selector chooses the file system that is kept for get_filesystem: 0 gives 3 (a
    // 1.44 MB diskette), 1 gives 2, 2 gives 6, any other 3.
    explicit FormatDisk(int selector);
    ~FormatDisk() override;
    FormatDisk(const FormatDisk&) = delete;
    FormatDisk& operator=(const FormatDisk&) = delete;

    // Sends a device command. While the reopen flag is set, which it is unless a derived class clears it, an
    // open device is closed and the device path opened anew first. Throws as DiskIO's DeviceControl, Open and
    // Close do.
    void DeviceControl(DWORD code, void* const in, DWORD inSize, void* out, DWORD outSize) override;

    // Stores the window that owns progress messages.
    virtual void GET_MESSAGE_WND(HWND& window);
    // Reports an error; kind is one of the three above.
    virtual void SHOW_ERROR(int errorNumber, int kind, const char* text);
    // Shows a status line; a pause other than 0 asks for time to read it.
    virtual void UPDATE_WINDOW(const char* text, int pause);
    // Moves the progress display: to `value` when absolute is not 0; otherwise on by `value`, where 0 stands
    // for the display's own step.
    virtual void MoveSlider(int absolute, int value);
    // The text to show for a fixed message; here the message itself.
    virtual const char* TRANSLATE_TEXT(const char* text);
    // For a derived class's own use; nothing calls it. Result: 0.
    virtual DWORD SpareHook(DWORD value);
    // Signals the object's event, as CEvent::Lock does.
    virtual int LockEvent();
    // The handle of that event, which stays the object's.
    virtual HANDLE GetEventHandle();

    // Back to the state without a drive: names, paths, boot sector image; suppresses the system's error
    // boxes.
    void ResetDrive();

    // Fills the drive list with the roots ("A:\") of all drives whose type the mask names; each type answers
    // to its own bit alone. The scan starts at A and ends before the first letter without a drive.
    // Throws FormatDiskException type 9 when A is such a letter; the list is then empty.
    void GetLogicalDrives(DWORD typeMask);

    // Takes a drive root as the drive under examination, to be reached by its letter. Result: 1.
    // Throws FormatDiskException type 8 for a name of fewer than 2 characters; nothing changes then.
    int SetupDrive(const char* name);

    // Composes the name that device commands open. byLetter 0: the physical drive, when it has a number other
    // than 0; otherwise the drive's letter, or, off NT, the named device when there is a name (may be null).
    void BuildDevicePath(int byLetter, const char* deviceName);

    // Opens the drive and compares its medium (NT: every medium that it can take) with the wanted one; the
    // drive geometry then tells what was read, on NT only when it is the wanted one. Result: 1.
    // A failure is reported with kind 200 and thrown on.
    int QueryDriveGeometry(MediaGeometry wanted);

    // Looks for the first drive with the wanted medium. Result: its root, valid until the next drive is set
    // up; an empty text when there is none or a drive fails. The device stays open.
    const char* GetFirstDriveOfType(MediaGeometry wanted);

    // Keeps a copy of 512 bytes; the size is not used, the one file system of this class has such sectors.
    void SetBootSectorImage(const unsigned char* image, DWORD size);

    // Writes the kept copy to sector 0 of the drive that the scan has found. Result: 1, or 0 after a failure,
    // which has been reported. Only what is no standard exception is thrown on, reported with kind 300.
    int WriteBootSector();

protected:
    static constexpr std::size_t sectorSize = 512;

    UTILS::UtilsString driveName_;
    DWORD physicalDrive_ = 0;  // 0: reached by letter; off NT 0 = A
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
