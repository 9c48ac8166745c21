#include <algorithm>
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/handle_table.h"
#include "winlayer/base/last_error.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/file_system/search_object.h"
#include "winlayer/file_system/wildcard.h"
#include "winlayer/files/drives.h"

namespace {

using winlayer::FileFacts;
using winlayer::FileSystem;
using winlayer::Listing;
using winlayer::SearchObject;

// The single entry of a pattern without wildcards.
class SingleListing : public Listing {
public:
    explicit SingleListing(FileFacts entry) : entry_(std::move(entry)) {}

    DWORD next(FileFacts& entry) override {
        if (given_) {
            return ERROR_NO_MORE_FILES;
        }
        given_ = true;
        entry = entry_;
        return 0;
    }

private:
    const FileFacts entry_;
    bool given_ = false;
};

// The first part is empty or ends with a separator or colon.
std::pair<std::string, std::string> splitPattern(const std::string& pattern) {
    const std::size_t end = pattern.find_last_of("\\/:");
    const std::size_t start = end == std::string::npos ? 0 : end + 1;
    return {pattern.substr(0, start), pattern.substr(start)};
}

DWORD findOne(const std::string& path, std::unique_ptr<Listing>& listing) {
    std::shared_ptr<FileSystem> files;
    std::string below;
    DWORD error = winlayer::Drives::current().resolve(path, files, below);
    // A drive's root is not in any directory.
    if (error == 0 && below.empty()) {
        error = ERROR_FILE_NOT_FOUND;
    }
    FileFacts facts;
    if (error == 0) {
        error = files->facts(below, facts);
    }
    if (error == 0) {
        listing = std::make_unique<SingleListing>(std::move(facts));
    }
    return error;
}

DWORD findMany(const std::string& directory, const std::string& pattern, std::unique_ptr<Listing>& listing) {
    if (pattern.find_first_of("<>\"|:") != std::string::npos) {
        return ERROR_INVALID_NAME;
    }
    std::shared_ptr<FileSystem> files;
    std::string below;
    const DWORD error =
        winlayer::Drives::current().resolve(directory.empty() ? "." : directory, files, below);
    return error != 0 ? error : files->search(below, pattern, listing);
}

DWORD find(const std::string& path, std::unique_ptr<Listing>& listing) {
    const auto [directory, pattern] = splitPattern(path);
    if (pattern.empty()) {
        return ERROR_FILE_NOT_FOUND;
    }
    return winlayer::hasWildcard(pattern) ? findMany(directory, pattern, listing) : findOne(path, listing);
}

template <std::size_t size>
void copyText(const std::string& text, char (&field)[size]) {
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(field, text.data(), length);
    field[length] = '\0';
}

void fill(const FileFacts& facts, WIN32_FIND_DATAA& data) {
    data = {};
    data.dwFileAttributes = facts.attributes;
    data.ftLastWriteTime = facts.written;
    data.nFileSizeHigh = static_cast<DWORD>(facts.size >> 32);
    data.nFileSizeLow = static_cast<DWORD>(facts.size);
    copyText(facts.name, data.cFileName);
    copyText(facts.shortName, data.cAlternateFileName);
}

}  // namespace

HANDLE WINAPI FindFirstFileA(LPCSTR pattern, LPWIN32_FIND_DATAA data) try {
    if (winlayer::denied(__func__)) {
        return INVALID_HANDLE_VALUE;
    }
    std::unique_ptr<Listing> listing;
    FileFacts first;
    DWORD error = pattern == nullptr ? ERROR_PATH_NOT_FOUND : find(pattern, listing);
    if (error == 0) {
        error = listing->next(first);
    }
    if (!winlayer::succeeded(error == ERROR_NO_MORE_FILES ? ERROR_FILE_NOT_FOUND : error)) {
        return INVALID_HANDLE_VALUE;
    }
    fill(first, *data);
    const HANDLE handle =
        winlayer::HandleTable::current().add(std::make_shared<SearchObject>(std::move(listing)));
    if (handle == nullptr) {
        SetLastError(ERROR_TOO_MANY_OPEN_FILES);
        return INVALID_HANDLE_VALUE;
    }
    return handle;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(INVALID_HANDLE_VALUE);
}

BOOL WINAPI FindNextFileA(HANDLE search, LPWIN32_FIND_DATAA data) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const auto object = winlayer::HandleTable::current().get<SearchObject>(search);
    if (object == nullptr) {
        return winlayer::failed(ERROR_INVALID_HANDLE);
    }
    const std::lock_guard lock(object->mutex);
    FileFacts facts;
    if (!winlayer::succeeded(object->listing->next(facts))) {
        return FALSE;
    }
    fill(facts, *data);
    return TRUE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

// As with CloseHandle, the handle is closed even when the fault plan fails the call.
BOOL WINAPI FindClose(HANDLE search) {
    const DWORD planned = winlayer::deniedCode(__func__);
    winlayer::HandleTable& handles = winlayer::HandleTable::current();
    const bool closed = handles.get<SearchObject>(search) != nullptr && handles.remove(search) != nullptr;
    if (planned != 0 || !closed) {
        return winlayer::failed(planned != 0 ? planned : ERROR_INVALID_HANDLE);
    }
    return TRUE;
}
