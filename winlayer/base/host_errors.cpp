#include "winlayer/base/host_errors.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "winlayer/include/winerror.h"

namespace winlayer {

namespace {

struct Row {
    int host;
    DWORD windows;
};

constexpr Row rows[] = {
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EBADF, ERROR_INVALID_HANDLE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EROFS, ERROR_WRITE_PROTECT},
    {ENOMEDIUM, ERROR_NOT_READY},
    {ENXIO, ERROR_NOT_READY},
    {ENODEV, ERROR_NOT_READY},
    {EILSEQ, ERROR_CRC},
    {EBADMSG, ERROR_CRC},
    {EMEDIUMTYPE, ERROR_UNRECOGNIZED_MEDIA},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {ENOTSUP, ERROR_NOT_SUPPORTED},
    {ENOSYS, ERROR_NOT_SUPPORTED},
    {ENOTTY, ERROR_INVALID_FUNCTION},
    {EEXIST, ERROR_FILE_EXISTS},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {EFBIG, ERROR_FILE_TOO_LARGE},
    {EIO, ERROR_IO_DEVICE},
    {EREMOTEIO, ERROR_IO_DEVICE},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
};

}  // namespace

DWORD windowsError(int hostError) {
    const auto row =
        std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) { return r.host == hostError; });
    return row == std::end(rows) ? ERROR_GEN_FAILURE : row->windows;
}

}  // namespace winlayer
