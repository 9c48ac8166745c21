#include "winlayer/base/gate.h"
#include "winlayer/base/handle_table.h"
#include "winlayer/base/last_error.h"
#include "winlayer/files/file_openers.h"

namespace {

using winlayer::FileObject;
using winlayer::OpenedFile;
using winlayer::OpenRequest;

// The attributes share their parameter with the flags, which begin here.
constexpr DWORD attributeMask = 0x0000FFFF;

DWORD checkRequest(LPCSTR name, const OpenRequest& request) {
    if (name == nullptr) {
        return ERROR_PATH_NOT_FOUND;
    }
    if (request.disposition < CREATE_NEW || request.disposition > TRUNCATE_EXISTING) {
        return ERROR_INVALID_PARAMETER;
    }
    const bool cannotTruncate =
        request.disposition == TRUNCATE_EXISTING && (request.access & GENERIC_WRITE) == 0;
    return cannotTruncate ? ERROR_INVALID_PARAMETER : 0;
}

HANDLE handleFor(OpenedFile opened, const OpenRequest& request, DWORD flags) {
    auto object = std::make_shared<FileObject>(std::move(opened.file), request.access,
                                               (flags & FILE_FLAG_OVERLAPPED) != 0);
    if (request.deleteOnClose) {
        object->deleteFrom = std::move(opened.target.files);
        object->deletePath = std::move(opened.target.below);
    }
    return winlayer::HandleTable::current().add(std::move(object));
}

}  // namespace

HANDLE WINAPI CreateFileA(LPCSTR name, DWORD access, DWORD sharing, LPSECURITY_ATTRIBUTES /*security*/,
                          DWORD disposition, DWORD flags, HANDLE /*templateFile*/) try {
    if (winlayer::denied(__func__)) {
        return INVALID_HANDLE_VALUE;
    }
    const OpenRequest request{access,
                              sharing,
                              disposition,
                              flags & attributeMask,
                              (flags & FILE_FLAG_WRITE_THROUGH) != 0,
                              (flags & FILE_FLAG_DELETE_ON_CLOSE) != 0};
    OpenedFile opened;
    DWORD error = checkRequest(name, request);
    if (error == 0) {
        error = openByName(name, request, opened);
    }
    if (!winlayer::succeeded(error)) {
        return INVALID_HANDLE_VALUE;
    }
    const bool reportsExisting = disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS;
    const bool existed = opened.existed;
    const HANDLE handle = handleFor(std::move(opened), request, flags);
    if (handle == nullptr) {
        SetLastError(ERROR_TOO_MANY_OPEN_FILES);
        return INVALID_HANDLE_VALUE;
    }
    SetLastError(reportsExisting && existed ? ERROR_ALREADY_EXISTS : NO_ERROR);
    return handle;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(INVALID_HANDLE_VALUE);
}
