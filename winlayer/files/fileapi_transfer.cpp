#include <limits>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/files/file_transfer.h"

namespace {

using winlayer::FileObject;
using winlayer::Transfer;

std::uint64_t offsetOf(const OVERLAPPED& overlapped) {
    return std::uint64_t{overlapped.OffsetHigh} << 32 | overlapped.Offset;
}

// Transfers at the file's position and advances it.
template <class Work>
Transfer atPosition(FileObject& file, const Work& work) {
    const std::lock_guard lock(file.mutex);
    const Transfer transfer = work(file.position);
    file.position += transfer.count;
    return transfer;
}

// Transfers at the block's offset. On a file that was not opened for overlapped transfers, also sets the
// file's position to the end of the transfer.
template <class Work>
Transfer atOffset(FileObject& file, OVERLAPPED& overlapped, const Work& work) {
    const std::uint64_t offset = offsetOf(overlapped);
    winlayer::beginOverlapped(overlapped);
    const Transfer transfer = work(offset);
    if (!file.overlapped) {
        const std::lock_guard lock(file.mutex);
        file.position = offset + transfer.count;
    }
    winlayer::endOverlapped(overlapped, transfer);
    return transfer;
}

// An OVERLAPPED block may replace the count, and must for a file opened for overlapped transfers.
bool hasPlaces(const FileObject& file, LPDWORD transferred, LPOVERLAPPED overlapped) {
    return overlapped != nullptr || (transferred != nullptr && !file.overlapped);
}

BOOL finish(Transfer transfer, LPDWORD transferred) {
    if (transferred != nullptr) {
        *transferred = transfer.count;
    }
    return winlayer::succeeded(transfer.error) ? TRUE : FALSE;
}

template <class Work>
BOOL transferThrough(FileObject& file, LPDWORD transferred, LPOVERLAPPED overlapped, const Work& work) {
    if (!hasPlaces(file, transferred, overlapped)) {
        return winlayer::failed(ERROR_INVALID_PARAMETER);
    }
    const Transfer transfer =
        overlapped != nullptr ? atOffset(file, *overlapped, work) : atPosition(file, work);
    return finish(transfer, transferred);
}

}  // namespace

// At the end of the file a plain read succeeds with no bytes; one with an OVERLAPPED block fails.
BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD count, LPDWORD transferred,
                     LPOVERLAPPED overlapped) try {
    if (transferred != nullptr) {
        *transferred = 0;
    }
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = winlayer::fileWith(file, GENERIC_READ);
    if (object == nullptr) {
        return FALSE;
    }
    const std::span<std::byte> bytes(static_cast<std::byte*>(buffer), count);
    return transferThrough(*object, transferred, overlapped, [&](std::uint64_t offset) {
        Transfer transfer = object->file->read(offset, bytes);
        if (overlapped != nullptr && transfer.error == 0 && transfer.count == 0 && count > 0) {
            transfer.error = ERROR_HANDLE_EOF;
        }
        return transfer;
    });
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD count, LPDWORD transferred,
                      LPOVERLAPPED overlapped) try {
    if (transferred != nullptr) {
        *transferred = 0;
    }
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = winlayer::fileWith(file, GENERIC_WRITE);
    if (object == nullptr) {
        return FALSE;
    }
    const std::span<const std::byte> bytes(static_cast<const std::byte*>(buffer), count);
    return transferThrough(*object, transferred, overlapped,
                           [&](std::uint64_t offset) { return object->file->write(offset, bytes); });
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

namespace {

// The position that a move starts from, or an error code if it cannot be determined.
DWORD startOfMove(FileObject& file, DWORD method, std::int64_t& start) {
    std::uint64_t size = 0;
    DWORD error = 0;
    switch (method) {
        case FILE_BEGIN:
            start = 0;
            return 0;
        case FILE_CURRENT:
            start = static_cast<std::int64_t>(file.position);
            return 0;
        case FILE_END:
            error = file.file->size(size);
            start = static_cast<std::int64_t>(size);
            return error;
        default:
            return ERROR_INVALID_PARAMETER;
    }
}

DWORD movePosition(FileObject& file, std::int64_t distance, DWORD method, bool wide) {
    std::int64_t start = 0;
    if (const DWORD error = startOfMove(file, method, start); error != 0) {
        return error;
    }
    if (distance > 0 && start > std::numeric_limits<std::int64_t>::max() - distance) {
        return ERROR_INVALID_PARAMETER;
    }
    const std::int64_t target = start + distance;
    if (target < 0) {
        return ERROR_NEGATIVE_SEEK;
    }
    // Without a pointer for the high half a position beyond 32 bits cannot be returned.
    if (!wide && target > std::numeric_limits<DWORD>::max()) {
        return ERROR_INVALID_PARAMETER;
    }
    file.position = static_cast<std::uint64_t>(target);
    return 0;
}

}  // namespace

DWORD WINAPI SetFilePointer(HANDLE file, LONG distance, PLONG distanceHigh, DWORD method) try {
    if (winlayer::denied(__func__)) {
        return INVALID_SET_FILE_POINTER;
    }
    const auto object = winlayer::fileWith(file, 0);
    if (object == nullptr) {
        return INVALID_SET_FILE_POINTER;
    }
    const std::int64_t wideDistance =
        distanceHigh == nullptr
            ? distance
            : static_cast<std::int64_t>(std::uint64_t{static_cast<DWORD>(*distanceHigh)} << 32 |
                                        static_cast<DWORD>(distance));
    const std::lock_guard lock(object->mutex);
    if (!winlayer::succeeded(movePosition(*object, wideDistance, method, distanceHigh != nullptr))) {
        return INVALID_SET_FILE_POINTER;
    }
    if (distanceHigh != nullptr) {
        *distanceHigh = static_cast<LONG>(object->position >> 32);
    }
    const auto low = static_cast<DWORD>(object->position);
    if (low == INVALID_SET_FILE_POINTER) {
        SetLastError(NO_ERROR);
    }
    return low;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(INVALID_SET_FILE_POINTER);
}

BOOL WINAPI SetEndOfFile(HANDLE file) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = winlayer::fileWith(file, GENERIC_WRITE);
    if (object == nullptr) {
        return FALSE;
    }
    const std::lock_guard lock(object->mutex);
    return winlayer::succeeded(object->file->resize(object->position)) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI FlushFileBuffers(HANDLE file) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = winlayer::fileWith(file, GENERIC_WRITE);
    return object != nullptr && winlayer::succeeded(object->file->flush()) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

DWORD WINAPI GetFileSize(HANDLE file, LPDWORD high) try {
    if (winlayer::denied(__func__)) {
        return INVALID_FILE_SIZE;
    }
    const auto object = winlayer::fileWith(file, 0);
    std::uint64_t size = 0;
    if (object == nullptr || !winlayer::succeeded(object->file->size(size))) {
        return INVALID_FILE_SIZE;
    }
    if (high != nullptr) {
        *high = static_cast<DWORD>(size >> 32);
    }
    const auto low = static_cast<DWORD>(size);
    if (low == INVALID_FILE_SIZE) {
        SetLastError(NO_ERROR);
    }
    return low;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(INVALID_FILE_SIZE);
}
