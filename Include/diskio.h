#pragma once
#include <windows.h>

#include <atomic>
#include <memory>
#include <string>

#include "CNTAdminObject.h"
#include "CSyncObject.h"
#include "UtilsBase.h"
#include "UtilsNumber.h"
#include "UtilsString.h"
#include "dos_device.h"
#include "owned_handle.h"
#include "std_exception.h"

namespace UTILS {

// A value that derived classes set and DiskIO only keeps.
enum m_FilesystemTypes : DWORD {
    FILESYSTEM_NONE = 0,
    FILESYSTEM_FAT12_FLOPPY = 3,  // 1.44 MB
};

// A failed operation of a file or device: what std_exception reports, field by field.
class DiskIoException : public ReportException<DiskIoException> {
public:
    static constexpr char class_name[] = "class UTILS::DiskIoException";
    using ReportException::ReportException;
};

// Its type codes.
inline constexpr DWORD DISKIO_DEVICE = 0;
inline constexpr DWORD DISKIO_OPEN = 1;
inline constexpr DWORD DISKIO_READ = 2;
inline constexpr DWORD DISKIO_WRITE = 3;
inline constexpr DWORD DISKIO_CLOSE = 4;
inline constexpr DWORD DISKIO_SEEK = 5;
inline constexpr DWORD DISKIO_DELETE = 6;
inline constexpr DWORD DISKIO_SECTOR = 11;
inline constexpr DWORD DISKIO_DELETE_DIR = 12;
inline constexpr DWORD DISKIO_WRONG_SYSTEM = 13;

// One open file or device: its handle, the name it was opened under, its mode and the counters of the last
// transfer. Every failed system call is thrown as a DiskIoException whose condition names the operation; the
// object stays usable after it. "NT" below means an operating system value of 4 or more.
// Thread rule: one thread at a time; only copying into an object and destroying it take its lock.
//
//   UTILS::DiskIO file("C:\\a.txt", GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, 0);
//   file.Read(buffer, 100);
//   file.Close();
class DiskIO : public UtilsBase<char> {
public:
    static constexpr WORD wholeSize = 0xFFFF;  // transfer size of the operators' whole mode
    static constexpr WORD defaultSize = 512;

    // Makes an object with default sizes and opens `name` when it is not null, as Open does (which see for
    // the parameters and for what is thrown).
    explicit DiskIO(const char* name = nullptr, DWORD access = GENERIC_READ | GENERIC_WRITE,
                    DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE, DWORD openflag = OPEN_EXISTING,
                    int overlapped = 0);
    // Copies all members; the handle is duplicated, so that each object closes its own, the event of an
    // overlapped object is shared and closed by the last that uses it. Throws type 1 when the handle cannot
    // be duplicated; the target of an assignment is then unchanged.
    DiskIO(const DiskIO& other);
    DiskIO& operator=(const DiskIO& other);
    // Restores a saved error mode, then closes as Close does, but throws nothing: call Close to learn of a
    // failure.
    ~DiskIO() override;

    // One DeviceIoControl on the handle; sizes in bytes. Throws type 0; the error number comes from a reply
    // of 518 bytes (its last byte) or 28 bytes (AX; AH for code 4), otherwise from the system.
    virtual void DeviceControl(DWORD code, void* const in, DWORD inSize, void* out, DWORD outSize);

    bool operator==(const DiskIO& other) const { return handle_.get() == other.handle_.get(); }
    bool operator!=(const DiskIO& other) const { return !(*this == other); }

    // Opens a file or device; what was open before is closed. `name` in the ANSI code page, which may be part
    // of this object's own; access, sharing and openflag as CreateFileA takes them; overlapped non-zero asks
    // for overlapped transfers, which only NT has. Throws type 1; nothing is open then. A device opens with
    // size 0 and the error of asking for it.
    void Open(const char* name, DWORD access, DWORD sharing, DWORD openflag, int overlapped);
    // One transfer of `count` bytes, or of the read or write size when it is 0. Throws type 2 (Read) or 3
    // (Write) when not a single byte moved, the end of the file included; a shorter transfer is no failure.
    // An overlapped transfer may still be under way on return: the buffer must live until Flush or Close.
    void Read(void* buffer, DWORD count);
    void Write(const void* buffer, DWORD count);
    // Moves the file pointer by `distance` bytes from FILE_BEGIN, FILE_CURRENT or FILE_END. Returns the low
    // 32 bits of the new position. Throws type 5.
    DWORD SetFilePointer(LARGE_INTEGER distance, DWORD method) const;
    // Where the next transfer of the operators, Read and Write begins, in bytes. Throws type 5.
    DWORD64 GetFilePointer() const;
    // Makes the file end at the file pointer. Throws type 5.
    void SetEndOfFile();
    // Overlapped: waits up to 15 seconds for a transfer under way. Otherwise asks the system to write what it
    // holds back; its answer is not examined.
    void Flush();
    // Waits or flushes as Flush does, closes the handle and resets all members but the sizes; with nothing
    // open it only resets. Throws type 4; nothing is open then, but the name is kept.
    void Close();
    // Closes without waiting, flushing or throwing; resets as Close does.
    void CloseQuietly() noexcept;

    // Deletes the object's own file, read-only ones too when the attributes member says so. Throws type 6.
    void Delete();
    void Remove() { Delete(); }
    // Deletes the named file, with clearAttributes non-zero also a read-only one. Throws type 6.
    void Delete(const char* name, int clearAttributes);
    // Removes an empty directory; clearAttributes as above. Throws type 12.
    void DeleteDir(const char* directory, int clearAttributes);
    void RemoveDir(const char* directory, int clearAttributes) { DeleteDir(directory, clearAttributes); }

    // Keeps the attributes for the next Open and gives them to the file when one is open. Throws type 1.
    void SetFileAttributes(DWORD attributes);
    // What the system reports for the file name now; INVALID_FILE_ATTRIBUTES when it cannot tell.
    DWORD GetFileAttributes() const;

    // Suppresses the system's error boxes for the process until ResetErrorMode or destruction.
    void SetErrorMode();
    void ResetErrorMode();

    // Transfer size in bytes of Read and Write with count 0 and of the operators; 65535 = whole mode.
    void SetReadWriteSize(WORD size);

    bool IsOpen() const { return static_cast<bool>(handle_); }
    bool IsNT() const { return nt_; }
    ostype get_ostype() const { return os_.GetOS(); }
    m_FilesystemTypes get_filesystem() const { return filesystem_; }
    // True while the object works overlapped.
    bool get_async_mode() const { return IsOverlapped(); }
    DWORD get_error() const { return error_; }
    DWORD GetBytesRead() const { return bytesRead_; }
    DWORD GetBytesWritten() const { return bytesWritten_; }
    // Low and high 32 bits of the size when the file was opened or last written; no system call.
    DWORD GetFileSize() const { return fileSize_; }
    DWORD GetFileSizeHigh() const { return fileSizeHigh_; }
    const UtilsString& GetFileName() const { return fileName_; }

    // Raw bytes, without length or terminator. Texts: in whole mode their length, otherwise write-size bytes,
    // padded with zeros when the text is shorter; an empty text in whole mode writes nothing. The pointer to
    // unsigned char must hold write-size bytes. Numbers: 4 bytes, little-endian. All throw as Write does.
    DiskIO& operator<<(const char* text);
    DiskIO& operator<<(const unsigned char* bytes);
    DiskIO& operator<<(DWORD number);
    DiskIO& operator<<(const UtilsString& text);
    DiskIO& operator<<(const UtilsByte& bytes);
    // Read read-size bytes, in whole mode as many as the file size says; the caller's buffer must hold them.
    // A string receives the text up to the first zero byte, a byte string all bytes that were read (after a
    // failure it is empty). All throw as Read does, an empty file in whole mode included.
    DiskIO& operator>>(char* buffer);
    DiskIO& operator>>(unsigned char* buffer);
    DiskIO& operator>>(DWORD& number);
    template <UnsignedLong Number>
    DiskIO& operator>>(Number& number) {
        return WithDword(number, [this](DWORD& value) -> DiskIO& { return *this >> value; });
    }
    DiskIO& operator>>(UtilsString& text);
    DiskIO& operator>>(UtilsByte& bytes);

    // Absolute sectors of a drive (0 = A) on Windows 95/98/Me, through an open VWIN32 device. The packet's
    // buffer address comes from PtrToUlong. Throw type 13 on NT, type 11 with the service's error.
    void DeviceRead(_ABSREADWRITE& packet, DWORD drive);
    void DeviceWrite(_ABSREADWRITE& packet, DWORD drive);
    // BIOS read and write of a virtual device driver. Throw as DeviceControl does.
    void DeviceRead(_BIOSREADWRITEPARAMIN in, _BIOSREADWRITEPARAMIN& out);
    void DeviceWrite(_BIOSREADWRITEPARAMIN in, _BIOSREADWRITEPARAMIN& out);
    // Formats one 18-sector track through a virtual device driver: drive, cylinder and head (low bytes) and
    // a table of 18 sector identifiers. Throws type 13 on NT, otherwise as DeviceControl does.
    void BiosTrackFormat(const _SECTOR_ID* ids, DWORD drive, DWORD cylinder, DWORD head);
    // Kept for the interface; device parameters are not set by this system.
    void SetDeviceParam(_DEVICEPARAMS* const, DWORD) {}

protected:
    // The event of an overlapped object with what its sharers must know of it.
    struct SharedEvent {
        explicit SharedEvent(OwnedHandle event) : handle(std::move(event)) {}
        OwnedHandle handle;
        std::atomic<bool> outstanding{false};  // a transfer was started and not yet waited for
    };

    // Copies the members of `other`; the caller holds the lock.
    void CopyObj(const DiskIO& other);
    // Back to the state without a file; sizes to 512 only when resetSizes is not 0.
    void Init(int resetSizes);

    bool IsOverlapped() const { return overlapped_.hEvent != nullptr && nt_; }
    const char* ModeName() const { return IsOverlapped() ? "Overlapped" : "Non Overlapped"; }
    // 0, or the system's error; the size is 0 then.
    DWORD RefreshFileSize();
    // Keeps the condition as error text and throws it with the recorded error.
    [[noreturn]] void Raise(DWORD type, const std::string& condition, int line = __builtin_LINE()) const;

    CCriticalSection lock_;
    mutable UtilsString errorText_;
    CNTAdminObject os_;
    m_FilesystemTypes filesystem_ = FILESYSTEM_NONE;
    OwnedHandle handle_;
    OVERLAPPED overlapped_{};
    UtilsString fileName_;
    DWORD fileSize_ = 0;
    DWORD attributes_ = FILE_ATTRIBUTE_NORMAL;
    mutable DWORD position_ = 0;
    WORD readSize_ = defaultSize;
    WORD writeSize_ = defaultSize;
    DWORD bytesRead_ = 0;
    DWORD bytesWritten_ = 0;
    mutable DWORD error_ = 0;
    DWORD savedErrorMode_ = noErrorMode;

private:
    static constexpr DWORD noErrorMode = 0xFFFFFFFF;
    static constexpr DWORD eventLimit = 15000;  // milliseconds

    OwnedHandle DuplicatedHandle() const;
    void MakeEvent();
    DWORD OpenFlags() const;
    bool WaitForTransfer();
    void FinishTransfers();
    std::string NameText() const;

    OVERLAPPED* NextOverlapped(DWORD length);
    bool TransferStarted(bool done, DWORD moved);
    bool CompleteTransfer(DWORD& moved);
    // Transfers of exactly this length, 0 included, which the system's "no byte moved" then makes a failure.
    void ReadExactly(void* buffer, DWORD length);
    void WriteExactly(const void* buffer, DWORD length);
    // The same with a buffer that does not outlive the call: an overlapped transfer is over on return.
    void ReadAndWait(void* buffer, DWORD length);
    void WriteAndWait(const void* buffer, DWORD length);
    DWORD ReadLength() const;
    void WriteText(const char* text, std::size_t length);

    bool AbsoluteTransfer(_ABSREADWRITE& packet, DWORD drive, DWORD code);
    void RefuseOnNT(const char* operation, int line = __builtin_LINE());
    [[noreturn]] void RaiseClose(int line = __builtin_LINE()) const;
    [[noreturn]] void RaiseRead(DWORD length, int line = __builtin_LINE()) const;
    [[noreturn]] void RaiseWrite(DWORD length, int line = __builtin_LINE()) const;

    bool nt_ = false;  // os_.IsNT(), asked once: it decides the path of every transfer
    DWORD fileSizeHigh_ = 0;
    std::shared_ptr<SharedEvent> event_;
};

}  // namespace UTILS
