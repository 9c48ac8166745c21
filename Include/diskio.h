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

// Set by derived classes; DiskIO only stores it.
enum m_FilesystemTypes : DWORD {
    FILESYSTEM_NONE = 0,
    FILESYSTEM_FAT12_FLOPPY = 3,  // 1.44 MB
};

// A failed operation on a file or device, with the fields of its report.
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
// transfer. A failed system call throws a DiskIoException whose condition names the operation; the object
// stays usable. "NT" below means an operating system value of 4 or more.
// Thread rule: one thread at a time; only copying into an object and destroying it take its lock.
//
//   UTILS::DiskIO file("C:\\a.txt", GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, 0);
//   file.Read(buffer, 100);
//   file.Close();
class DiskIO : public UtilsBase<char> {
public:
    static constexpr WORD wholeSize = 0xFFFF;  // transfer size for the operators' whole-file mode
    static constexpr WORD defaultSize = 512;

    // Sets the default sizes and opens `name` if it is not null, as Open does (see there for the parameters
    // and exceptions).
    explicit DiskIO(const char* name = nullptr, DWORD access = GENERIC_READ | GENERIC_WRITE,
                    DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE, DWORD openflag = OPEN_EXISTING,
                    int overlapped = 0);
    // Copies all members. The handle is duplicated, so each object closes its own; the event of an overlapped
    // object is shared and closed by its last user. Throws type 1 if the handle cannot be duplicated; the
    // target of an assignment is then unchanged.
    DiskIO(const DiskIO& other);
    DiskIO& operator=(const DiskIO& other);
    // Restores a saved error mode, then closes as Close does, but throws nothing: call Close to detect a
    // failure.
    ~DiskIO() override;

    // One DeviceIoControl on the handle; sizes in bytes. Throws type 0; the error number comes from a reply
    // of 518 bytes (its last byte) or 28 bytes (AX; AH for code 4), otherwise from the system.
    virtual void DeviceControl(DWORD code, void* const in, DWORD inSize, void* out, DWORD outSize);

    bool operator==(const DiskIO& other) const { return handle_.get() == other.handle_.get(); }
    bool operator!=(const DiskIO& other) const { return !(*this == other); }

    // Opens a file or device after closing what was open. `name` is in the ANSI code page and may be part of
    // this object's own; access, sharing and openflag are as for CreateFileA; overlapped non-zero requests
    // overlapped transfers, which only NT has. Throws type 1; nothing is open then. A device opens with size
    // 0 and the error of the failed size query.
    void Open(const char* name, DWORD access, DWORD sharing, DWORD openflag, int overlapped);
    // Transfers `count` bytes, or the read or write size if it is 0. Throws type 2 (Read) or 3 (Write) if no
    // byte was transferred, also at the end of the file; a short transfer is not a failure. An overlapped
    // transfer may still be pending on return: the buffer must stay valid until Flush or Close.
    void Read(void* buffer, DWORD count);
    void Write(const void* buffer, DWORD count);
    // Moves the file pointer by `distance` bytes from FILE_BEGIN, FILE_CURRENT or FILE_END. Returns the low
    // 32 bits of the new position. Throws type 5.
    DWORD SetFilePointer(LARGE_INTEGER distance, DWORD method) const;
    // The offset in bytes at which the next transfer begins. Throws type 5.
    DWORD64 GetFilePointer() const;
    // Sets the end of the file to the file pointer. Throws type 5.
    void SetEndOfFile();
    // Overlapped: waits up to 15 seconds for a pending transfer. Otherwise flushes the system's buffers; a
    // failure is ignored.
    void Flush();
    // Waits (up to 30 seconds) or flushes as Flush does, closes the handle and resets all members but the
    // sizes; with nothing open it only resets. Throws type 4; nothing is open then, but the name is kept.
    void Close();
    // Closes without waiting, flushing or throwing; resets as Close does.
    void CloseQuietly() noexcept;

    // Deletes the object's file, first clearing read-only, hidden or system attributes it set. Throws type 6.
    void Delete();
    void Remove() { Delete(); }
    // Deletes the named file, a read-only one only if clearAttributes is not 0. Throws type 6.
    void Delete(const char* name, int clearAttributes);
    // Removes an empty directory; clearAttributes as above. Throws type 12.
    void DeleteDir(const char* directory, int clearAttributes);
    void RemoveDir(const char* directory, int clearAttributes) { DeleteDir(directory, clearAttributes); }

    // Stores the attributes for the next Open and sets them on the file if one is open. Throws type 1.
    void SetFileAttributes(DWORD attributes);
    // The file's current attributes; INVALID_FILE_ATTRIBUTES if the system fails.
    DWORD GetFileAttributes() const;

    // Suppresses the system's error boxes for the process until ResetErrorMode or destruction.
    void SetErrorMode();
    void ResetErrorMode();

    // Transfer size in bytes of Read and Write with count 0 and of the operators; 65535 = whole-file mode.
    void SetReadWriteSize(WORD size);

    bool IsOpen() const { return static_cast<bool>(handle_); }
    bool IsNT() const { return nt_; }
    ostype get_ostype() const { return os_.GetOS(); }
    m_FilesystemTypes get_filesystem() const { return filesystem_; }
    // Whether the object uses overlapped transfers.
    bool get_async_mode() const { return IsOverlapped(); }
    DWORD get_error() const { return error_; }
    DWORD GetBytesRead() const { return bytesRead_; }
    DWORD GetBytesWritten() const { return bytesWritten_; }
    // Low and high 32 bits of the size as of the last open or write; no system call.
    DWORD GetFileSize() const { return fileSize_; }
    DWORD GetFileSizeHigh() const { return fileSizeHigh_; }
    const UtilsString& GetFileName() const { return fileName_; }

    // Raw bytes, without length or terminator. Texts: in whole-file mode their length (none for an empty
    // one), otherwise write-size bytes, padded with zeros if the text is shorter. Unsigned char: write-size
    // bytes. Numbers: 4 bytes, little-endian. All throw as Write does.
    DiskIO& operator<<(const char* text);
    DiskIO& operator<<(const unsigned char* bytes);
    DiskIO& operator<<(DWORD number);
    DiskIO& operator<<(const UtilsString& text);
    DiskIO& operator<<(const UtilsByte& bytes);
    // Read read-size bytes, in whole-file mode as many as the file has; the caller's buffer must hold them. A
    // string receives the text up to the first zero byte, a byte string all bytes that were read (after a
    // failure it is empty). All throw as Read does, also for an empty file in whole-file mode.
    DiskIO& operator>>(char* buffer);
    DiskIO& operator>>(unsigned char* buffer);
    DiskIO& operator>>(DWORD& number);
    template <UnsignedLong Number>
    DiskIO& operator>>(Number& number) {
        return WithDword(number, [this](DWORD& value) -> DiskIO& { return *this >> value; });
    }
    DiskIO& operator>>(UtilsString& text);
    DiskIO& operator>>(UtilsByte& bytes);

    // Transfer absolute sectors of a drive (0 = A) on Windows 95/98/Me, through an open VWIN32 device. The
    // packet's buffer address comes from PtrToUlong. Throw type 13 on NT, type 11 with the service's error.
    void DeviceRead(_ABSREADWRITE& packet, DWORD drive);
    void DeviceWrite(_ABSREADWRITE& packet, DWORD drive);
    // BIOS read and write through a virtual device driver. Throw as DeviceControl does.
    void DeviceRead(_BIOSREADWRITEPARAMIN in, _BIOSREADWRITEPARAMIN& out);
    void DeviceWrite(_BIOSREADWRITEPARAMIN in, _BIOSREADWRITEPARAMIN& out);
    // Formats one 18-sector track through a virtual device driver: drive, cylinder and head (low bytes) and
    // a table of 18 sector identifiers. Throws type 13 on NT, otherwise as DeviceControl does.
    void BiosTrackFormat(const _SECTOR_ID* ids, DWORD drive, DWORD cylinder, DWORD head);
    // Kept for the interface; does nothing.
    void SetDeviceParam(_DEVICEPARAMS* const, DWORD) {}

protected:
    // The event of an overlapped object and its state, shared by copies.
    struct SharedEvent {
        explicit SharedEvent(OwnedHandle event) : handle(std::move(event)) {}
        OwnedHandle handle;
        std::atomic<bool> outstanding{false};  // a transfer was started and not yet waited for
    };

    // Copies the members of `other`; the caller holds the lock.
    void CopyObj(const DiskIO& other);
    // Resets to the state without a file; the sizes to 512 only if resetSizes is not 0.
    void Init(int resetSizes);

    bool IsOverlapped() const { return overlapped_.hEvent != nullptr && nt_; }
    const char* ModeName() const { return IsOverlapped() ? "Overlapped" : "Non Overlapped"; }
    // 0, or the system's error; the size is 0 then.
    DWORD RefreshFileSize();
    // Stores the condition as error text and throws it with the recorded error.
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
    // Transfer exactly this length; a length of 0 fails, because no byte is transferred.
    void ReadExactly(void* buffer, DWORD length);
    void WriteExactly(const void* buffer, DWORD length);
    // The same with a buffer that does not outlive the call: an overlapped transfer is complete on return.
    void ReadAndWait(void* buffer, DWORD length);
    void WriteAndWait(const void* buffer, DWORD length);
    DWORD ReadLength() const;
    void WriteText(const char* text, std::size_t length);

    bool AbsoluteTransfer(_ABSREADWRITE& packet, DWORD drive, DWORD code);
    void RefuseOnNT(const char* operation, int line = __builtin_LINE());
    [[noreturn]] void RaiseClose(int line = __builtin_LINE()) const;
    [[noreturn]] void RaiseRead(DWORD length, int line = __builtin_LINE()) const;
    [[noreturn]] void RaiseWrite(DWORD length, int line = __builtin_LINE()) const;

    bool nt_ = false;  // os_.IsNT(), cached because every transfer needs it
    DWORD fileSizeHigh_ = 0;
    std::shared_ptr<SharedEvent> event_;
};

}  // namespace UTILS
