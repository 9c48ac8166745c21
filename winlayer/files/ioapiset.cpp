#include "winlayer/include/ioapiset.h"

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/files/file_transfer.h"

BOOL WINAPI DeviceIoControl(HANDLE device, DWORD code, LPVOID in, DWORD inSize, LPVOID out, DWORD outSize,
                            LPDWORD returned, LPOVERLAPPED overlapped) try {
    if (returned != nullptr) {
        *returned = 0;
    }
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = winlayer::fileWith(device, 0);
    if (object == nullptr) {
        return FALSE;
    }
    if (returned == nullptr && overlapped == nullptr) {
        return winlayer::failed(ERROR_INVALID_PARAMETER);
    }
    if (overlapped != nullptr) {
        winlayer::beginOverlapped(*overlapped);
    }
    DWORD count = 0;
    const DWORD error =
        object->file->control(code, {static_cast<const std::byte*>(in), in == nullptr ? 0 : inSize},
                              {static_cast<std::byte*>(out), out == nullptr ? 0 : outSize}, count);
    if (overlapped != nullptr) {
        winlayer::endOverlapped(*overlapped, {count, error});
    }
    if (returned != nullptr) {
        *returned = count;
    }
    return winlayer::succeeded(error) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

// Nothing is ever pending, so there is nothing to wait for.
BOOL WINAPI GetOverlappedResult(HANDLE file, LPOVERLAPPED overlapped, LPDWORD transferred, BOOL /*wait*/) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    if (winlayer::fileWith(file, 0) == nullptr) {
        return FALSE;
    }
    *transferred = static_cast<DWORD>(overlapped->InternalHigh);
    return winlayer::succeeded(static_cast<DWORD>(overlapped->Internal)) ? TRUE : FALSE;
}
