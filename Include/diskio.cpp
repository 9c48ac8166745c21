#include "diskio.h"

#include <algorithm>
#include <cctype>

namespace UTILS {

namespace {

constexpr DWORD clearableAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// Whether Windows 95/98/Me would load a virtual device driver for this name, or reach the one for DOS
// services.
bool NamesVirtualDevice(const std::string& name) {
    const std::string last = Lower(name.substr(name.find_last_of('\\') + 1));
    return last == "vwin32" || last.ends_with(".vxd");
}

}  // namespace

DiskIO::DiskIO(const char* name, DWORD access, DWORD sharing, DWORD openflag, int overlapped)
    : nt_(os_.IsNT() != 0) {
    if (name != nullptr) Open(name, access, sharing, openflag, overlapped);
}

DiskIO::DiskIO(const DiskIO& other) : UtilsBase<char>(other) {
    const SectionGuard guard(lock_);
    CopyObj(other);
}

DiskIO& DiskIO::operator=(const DiskIO& other) {
    if (this != &other) {
        const SectionGuard guard(lock_);
        CopyObj(other);
    }
    return *this;
}

DiskIO::~DiskIO() {
    ResetErrorMode();
    const SectionGuard guard(lock_);
    FinishTransfers();
    // Objects are destroyed inside containers and during stack unwinding, so a failure is not thrown here.
    handle_.Close();
}

void DiskIO::CopyObj(const DiskIO& other) {
    // First, so that a failure leaves this object unchanged.
    OwnedHandle handle = other.DuplicatedHandle();
    handle_ = std::move(handle);
    errorText_ = other.errorText_;
    os_ = other.os_;
    nt_ = other.nt_;
    filesystem_ = other.filesystem_;
    overlapped_ = other.overlapped_;
    event_ = other.event_;
    fileName_ = other.fileName_;
    fileSize_ = other.fileSize_;
    fileSizeHigh_ = other.fileSizeHigh_;
    attributes_ = other.attributes_;
    position_ = other.position_;
    readSize_ = other.readSize_;
    writeSize_ = other.writeSize_;
    bytesRead_ = other.bytesRead_;
    bytesWritten_ = other.bytesWritten_;
    error_ = other.error_;
    savedErrorMode_ = other.savedErrorMode_;
}

OwnedHandle DiskIO::DuplicatedHandle() const {
    if (!IsOpen()) return OwnedHandle();
    HANDLE copy = nullptr;
    if (!::DuplicateHandle(::GetCurrentProcess(), handle_.get(), ::GetCurrentProcess(), &copy, 0, TRUE,
                           DUPLICATE_SAME_ACCESS)) {
        error_ = ::GetLastError();
        Raise(DISKIO_OPEN, "DiskIO::CopyObj - DuplicateHandle could not share file " + NameText());
    }
    return OwnedHandle(copy);
}

void DiskIO::Init(int resetSizes) {
    handle_ = OwnedHandle();
    event_.reset();
    overlapped_ = {};
    fileSize_ = 0;
    fileSizeHigh_ = 0;
    attributes_ = FILE_ATTRIBUTE_NORMAL;
    position_ = 0;
    bytesRead_ = 0;
    bytesWritten_ = 0;
    error_ = 0;
    savedErrorMode_ = noErrorMode;
    if (resetSizes != 0) SetReadWriteSize(defaultSize);
    if (fileName_.length() != 0) fileName_.Erase();
}

void DiskIO::Open(const char* name, DWORD access, DWORD sharing, DWORD openflag, int overlapped) {
    handle_ = OwnedHandle();
    event_.reset();
    overlapped_ = {};
    position_ = 0;
    fileName_ = name;
    if (overlapped != 0 && nt_) MakeEvent();
    // `name` may have been this object's own, which the assignment may have reallocated.
    const HANDLE handle =
        ::CreateFileA(fileName_.c_str(), access, sharing, nullptr, openflag, OpenFlags(), nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        error_ = ::GetLastError();
        const std::string mode = ModeName();
        event_.reset();
        overlapped_ = {};
        Raise(DISKIO_OPEN, "DiskIo::Open - CreateFile handle invalid trying to open file:  " + NameText() +
                               " in " + mode + " mode with access " + std::to_string(access) + ", sharing " +
                               std::to_string(sharing) + ", openflag " + std::to_string(openflag));
    }
    handle_ = OwnedHandle(handle);
    error_ = RefreshFileSize();
}

void DiskIO::MakeEvent() {
    const HANDLE event = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
    if (event == nullptr) {
        error_ = ::GetLastError();
        Raise(DISKIO_OPEN, "DiskIo::Open - CreateEvent handle invalid");
    }
    OwnedHandle owner(event);
    event_ = std::make_shared<SharedEvent>(std::move(owner));
    overlapped_.hEvent = event;
}

DWORD DiskIO::OpenFlags() const {
    if (IsOverlapped()) {
        return attributes_ | FILE_FLAG_WRITE_THROUGH | FILE_FLAG_OVERLAPPED | FILE_FLAG_SEQUENTIAL_SCAN;
    }
    if (!nt_ && NamesVirtualDevice(NameText())) return FILE_FLAG_DELETE_ON_CLOSE | FILE_ATTRIBUTE_NORMAL;
    return attributes_ | FILE_FLAG_SEQUENTIAL_SCAN;
}

DWORD DiskIO::RefreshFileSize() {
    DWORD high = 0;
    const DWORD low = ::GetFileSize(handle_.get(), &high);
    // Without an error, 0xFFFFFFFF is a valid low half; a device reports no size.
    const DWORD failure = low == INVALID_FILE_SIZE ? ::GetLastError() : NO_ERROR;
    fileSize_ = failure == NO_ERROR ? low : 0;
    fileSizeHigh_ = failure == NO_ERROR ? high : 0;
    return failure;
}

bool DiskIO::WaitForTransfer() {
    if (!event_ || !event_->outstanding) return true;
    if (::WaitForSingleObject(overlapped_.hEvent, eventLimit) != WAIT_OBJECT_0) return false;
    event_->outstanding = false;
    return true;
}

void DiskIO::FinishTransfers() {
    if (IsOverlapped()) {
        // A transfer that exceeds the limit is waited for once more before it is given up.
        if (!WaitForTransfer()) WaitForTransfer();
    } else if (IsOpen()) {
        ::FlushFileBuffers(handle_.get());
    }
}

void DiskIO::Flush() {
    if (IsOverlapped()) {
        WaitForTransfer();
    } else if (IsOpen()) {
        ::FlushFileBuffers(handle_.get());
    }
}

void DiskIO::Close() {
    FinishTransfers();
    if (!handle_.Close()) {
        error_ = ::GetLastError();
        RaiseClose();
    }
    Init(0);
}

void DiskIO::RaiseClose(int line) const {
    Raise(DISKIO_CLOSE,
          std::string("DiskIO::Close() - CloseHandle in ") + ModeName() + " mode could not close file " +
              NameText(),
          line);
}

void DiskIO::CloseQuietly() noexcept {
    try {
        Init(0);
    } catch (...) {
        // Only clearing the name can fail, for lack of memory; the handle is already closed.
    }
}

void DiskIO::Delete() {
    Delete(NameText().c_str(), (attributes_ & clearableAttributes) != 0);
}

void DiskIO::Delete(const char* name, int clearAttributes) {
    if (clearAttributes != 0) ::SetFileAttributesA(name, FILE_ATTRIBUTE_NORMAL);
    if (!::DeleteFileA(name)) {
        error_ = ::GetLastError();
        Raise(DISKIO_DELETE, std::string("DiskIO::Delete(inFileName) - DeleteFile in ") + ModeName() +
                                 " mode could not delete file " + name);
    }
}

void DiskIO::DeleteDir(const char* directory, int clearAttributes) {
    if (clearAttributes != 0) ::SetFileAttributesA(directory, FILE_ATTRIBUTE_NORMAL);
    if (!::RemoveDirectoryA(directory)) {
        error_ = ::GetLastError();
        Raise(DISKIO_DELETE_DIR, std::string("DiskIO::DeleteDir - Cannot remove directory:  ") + directory);
    }
}

void DiskIO::SetFileAttributes(DWORD attributes) {
    attributes_ = attributes;
    if (!IsOpen()) return;
    if (!::SetFileAttributesA(fileName_.c_str(), attributes)) {
        error_ = ::GetLastError();
        Raise(DISKIO_OPEN,
              "DiskIO::SetFileAttributes - Error setting the file attributes on file:  " + NameText());
    }
}

DWORD DiskIO::GetFileAttributes() const {
    return ::GetFileAttributesA(fileName_.c_str());
}

void DiskIO::SetErrorMode() {
    const DWORD previous = ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    // After repeated calls, the mode to restore is still the one before the first.
    if (savedErrorMode_ == noErrorMode) savedErrorMode_ = previous;
}

void DiskIO::ResetErrorMode() {
    if (savedErrorMode_ == noErrorMode) return;
    ::SetErrorMode(savedErrorMode_);
    savedErrorMode_ = noErrorMode;
}

void DiskIO::SetReadWriteSize(WORD size) {
    readSize_ = size;
    writeSize_ = size;
}

std::string DiskIO::NameText() const {
    return std::string(fileName_.c_str(), fileName_.length());
}

void DiskIO::Raise(DWORD type, const std::string& condition, int line) const {
    errorText_ = condition;
    throw DiskIoException(type, error_, static_cast<DWORD>(line), "..\\..\\Include\\diskio", errorText_);
}

}  // namespace UTILS
