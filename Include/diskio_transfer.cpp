#include "diskio.h"

// Reading, writing and moving the file pointer.

namespace UTILS {

namespace {

std::string MethodName(DWORD method) {
    switch (method) {
        case FILE_BEGIN:
            return "FILE_BEGIN";
        case FILE_CURRENT:
            return "FILE_CURRENT";
        case FILE_END:
            return "FILE_END";
        default:
            return std::to_string(method);
    }
}

}  // namespace

OVERLAPPED* DiskIO::NextOverlapped(DWORD length) {
    if (!IsOverlapped()) return nullptr;
    overlapped_.Offset = position_;
    overlapped_.OffsetHigh = 0;
    position_ += length;
    return &overlapped_;
}

bool DiskIO::TransferStarted(bool done, DWORD moved) {
    error_ = ::GetLastError();
    const bool pending = error_ == ERROR_IO_PENDING;
    if (event_) event_->outstanding = done || pending;
    return (done && moved > 0) || pending;
}

void DiskIO::ReadExactly(void* buffer, DWORD length) {
    bytesRead_ = 0;
    // The error of an earlier call must not be mistaken for this one's.
    ::SetLastError(NO_ERROR);
    const BOOL done = ::ReadFile(handle_.get(), buffer, length, &bytesRead_, NextOverlapped(length));
    if (!TransferStarted(done != FALSE, bytesRead_)) RaiseRead(length);
}

void DiskIO::WriteExactly(const void* buffer, DWORD length) {
    bytesWritten_ = 0;
    ::SetLastError(NO_ERROR);
    const BOOL done = ::WriteFile(handle_.get(), buffer, length, &bytesWritten_, NextOverlapped(length));
    const bool started = TransferStarted(done != FALSE, bytesWritten_);
    RefreshFileSize();
    if (!started) RaiseWrite(length);
}

void DiskIO::Read(void* buffer, DWORD count) {
    ReadExactly(buffer, count == 0 ? readSize_ : count);
}

void DiskIO::Write(const void* buffer, DWORD count) {
    WriteExactly(buffer, count == 0 ? writeSize_ : count);
}

bool DiskIO::CompleteTransfer(DWORD& moved) {
    if (error_ != ERROR_IO_PENDING) return true;
    const BOOL done = ::GetOverlappedResult(handle_.get(), &overlapped_, &moved, TRUE);
    error_ = done ? NO_ERROR : ::GetLastError();
    event_->outstanding = false;
    return done && moved > 0;
}

void DiskIO::ReadAndWait(void* buffer, DWORD length) {
    ReadExactly(buffer, length);
    if (!CompleteTransfer(bytesRead_)) RaiseRead(length);
}

void DiskIO::WriteAndWait(const void* buffer, DWORD length) {
    WriteExactly(buffer, length);
    if (!CompleteTransfer(bytesWritten_)) RaiseWrite(length);
}

void DiskIO::RaiseRead(DWORD length, int line) const {
    Raise(DISKIO_READ,
          std::string("DiskIO::Read - ReadFile in ") + ModeName() + " mode read " +
              std::to_string(bytesRead_) + " bytes out of " + std::to_string(length),
          line);
}

void DiskIO::RaiseWrite(DWORD length, int line) const {
    Raise(DISKIO_WRITE,
          std::string("DiskIO::Write - WriteFile in ") + ModeName() + " mode wrote " +
              std::to_string(bytesWritten_) + " bytes out of " + std::to_string(length),
          line);
}

DWORD DiskIO::SetFilePointer(LARGE_INTEGER distance, DWORD method) const {
    LONG high = static_cast<LONG>(distance.QuadPart >> 32);
    const auto low = static_cast<DWORD>(distance.QuadPart & 0xFFFFFFFF);
    const DWORD moved =
        ::SetFilePointer(handle_.get(), static_cast<LONG>(low), high != 0 ? &high : nullptr, method);
    if (moved == INVALID_SET_FILE_POINTER) {
        error_ = ::GetLastError();
        Raise(DISKIO_SEEK, "DiskIo::SetFilePointer - SetFilePointer could not move file pointer by " +
                               std::to_string(low) + " from position " + MethodName(method));
    }
    position_ = moved;
    return moved;
}

// The system keeps no file pointer for an overlapped file.
DWORD64 DiskIO::GetFilePointer() const {
    if (IsOverlapped()) return position_;
    LONG high = 0;
    ::SetLastError(NO_ERROR);
    const DWORD low = ::SetFilePointer(handle_.get(), 0, &high, FILE_CURRENT);
    if (low == INVALID_SET_FILE_POINTER && ::GetLastError() != NO_ERROR) {
        error_ = ::GetLastError();
        Raise(DISKIO_SEEK, "DiskIo::GetFilePointer - SetFilePointer could not tell the file pointer");
    }
    return DWORD64{static_cast<DWORD>(high)} << 32 | low;
}

void DiskIO::SetEndOfFile() {
    if (::SetEndOfFile(handle_.get())) return;
    error_ = ::GetLastError();
    Raise(DISKIO_SEEK, "DiskIo::SetEndOfFile");
}

}  // namespace UTILS
