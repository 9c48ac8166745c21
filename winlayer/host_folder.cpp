#include "winlayer/host_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "winlayer/case_folding.h"
#include "winlayer/code_pages.h"
#include "winlayer/host_attributes.h"
#include "winlayer/host_errors.h"
#include "winlayer/host_file.h"
#include "winlayer/host_listing.h"
#include "winlayer/machine.h"
#include "winlayer/path_resolution.h"

namespace winlayer {

namespace {

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The name of an entry of this folder that differs from the given one only in case; "" when there is none.
std::string nameWithoutCase(const std::string& folder, std::string_view name) {
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(folder.empty() ? "/" : folder.c_str()),
                                                        ::closedir);
    if (directory == nullptr) {
        return {};
    }
    const std::string wanted = foldCase(name);
    while (const dirent* entry = ::readdir(directory.get())) {
        if (foldCase(entry->d_name) == wanted) {
            return entry->d_name;
        }
    }
    return {};
}

bool wants(const OpenRequest& request, DWORD access) {
    return (request.access & access) != 0;
}

bool truncates(const OpenRequest& request) {
    return request.disposition == CREATE_ALWAYS || request.disposition == TRUNCATE_EXISTING;
}

bool creates(const OpenRequest& request) {
    return request.disposition == CREATE_NEW || request.disposition == CREATE_ALWAYS ||
           request.disposition == OPEN_ALWAYS;
}

// What is missing when something is to be made is the directory to make it in.
DWORD errorOfMaking(int hostError) {
    return hostError == ENOENT ? ERROR_PATH_NOT_FOUND : windowsError(hostError);
}

// What other opens of the file must share.
DWORD sharedAccess(const OpenRequest& request) {
    return request.access | (request.deleteOnClose ? deleteAccess : 0);
}

// A file that was a regular one a moment ago might have become a pipe: opening must not wait for its other
// end.
int openFlags(const OpenRequest& request) {
    const bool writing = wants(request, GENERIC_WRITE) || truncates(request);
    const bool reading = wants(request, GENERIC_READ);
    const int mode = writing                       ? (reading ? O_RDWR : O_WRONLY)
                     : reading || creates(request) ? O_RDONLY
                                                   : O_PATH;
    return mode | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | (request.writeThrough ? O_DSYNC : 0);
}

}  // namespace

HostFolder::HostFolder(const Machine& machine, std::shared_ptr<ShareTable> shares, std::string root)
    : machine_(machine), shares_(std::move(shares)), root_(std::move(root)) {}

const std::string& HostFolder::root() {
    return root_;
}

std::string HostFolder::hostPath(const std::string& below) {
    std::string path = root();
    path.reserve(path.size() + 1 + below.size());
    path += '/';
    const std::size_t start = path.size();
    path += isAscii(below) ? below : toUtf8(machine_, below);
    std::replace(path.begin() + static_cast<std::ptrdiff_t>(start), path.end(), '\\', '/');
    return path;
}

DWORD HostFolder::locate(const std::string& below, std::string& path, struct stat& facts) {
    path = hostPath(below);
    if (::stat(path.c_str(), &facts) == 0) {
        return 0;
    }
    if (errno != ENOENT && errno != ENOTDIR) {
        return windowsError(errno);
    }
    if (const DWORD error = locateWithoutCase(below, path); error != 0) {
        return error;
    }
    return ::stat(path.c_str(), &facts) == 0 ? 0 : windowsError(errno);
}

DWORD HostFolder::locateWithoutCase(const std::string& below, std::string& path) {
    const std::string exact = hostPath(below);
    path = root();
    std::size_t start = path.size() + 1;
    while (start <= exact.size()) {
        const std::size_t end = std::min(exact.find('/', start), exact.size());
        const std::string element = exact.substr(start, end - start);
        start = end + 1;
        const std::string asSpelt = path + '/' + element;
        struct stat facts;
        if (::lstat(asSpelt.c_str(), &facts) == 0) {
            path = asSpelt;
            continue;
        }
        const bool inDirectory = errno != ENOTDIR;
        const std::string other = inDirectory ? nameWithoutCase(path, element) : std::string();
        path += '/' + (other.empty() ? element : other);
        if (other.empty()) {
            const bool last = end == exact.size();
            return last && inDirectory ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
        }
    }
    return 0;
}

DWORD HostFolder::open(const std::string& below, const OpenRequest& request, std::unique_ptr<OpenFile>& file,
                       bool& existed) {
    std::string path;
    struct stat known;
    const DWORD error = locate(below, path, known);
    existed = error == 0;
    if (existed) {
        return openExisting(path, known, request, file);
    }
    return error == ERROR_FILE_NOT_FOUND && creates(request) ? create(path, request, file) : error;
}

DWORD HostFolder::create(const std::string& path, const OpenRequest& request,
                         std::unique_ptr<OpenFile>& file) {
    const DWORD attributes = (request.attributes & keptAttributes) | FILE_ATTRIBUTE_ARCHIVE;
    const bool modeHoldsAll = (attributes & ~FILE_ATTRIBUTE_READONLY) == FILE_ATTRIBUTE_ARCHIVE;
    const bool readOnly = modeHoldsAll && attributes != FILE_ATTRIBUTE_ARCHIVE;
    HostDescriptor descriptor(
        ::open(path.c_str(), openFlags(request) | O_CREAT | O_EXCL, readOnly ? 0444 : 0666));
    struct stat facts;
    if (!descriptor || ::fstat(descriptor.get(), &facts) != 0) {
        return errorOfMaking(errno);
    }
    std::unique_ptr<ShareTable::Entry> share;
    if (!shares_->open({facts.st_dev, facts.st_ino}, sharedAccess(request), request.sharing, share)) {
        return ERROR_SHARING_VIOLATION;
    }
    if (!modeHoldsAll) {
        if (const DWORD error = storeAttributes(path.c_str(), facts, attributes); error != 0) {
            ::unlink(path.c_str());
            return error;
        }
    }
    file = std::make_unique<HostFile>(std::move(descriptor), std::move(share), request);
    return 0;
}

// Windows refuses to overwrite a hidden or system file by a request that does not name that attribute.
DWORD HostFolder::mayOverwrite(const std::string& path, const struct stat& known,
                               const OpenRequest& request) const {
    const DWORD attributes = attributesOf(path.c_str(), known);
    constexpr DWORD named = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const bool unnamed =
        request.disposition == CREATE_ALWAYS && (attributes & named & ~request.attributes) != 0;
    return (attributes & FILE_ATTRIBUTE_READONLY) != 0 || unnamed ? ERROR_ACCESS_DENIED : 0;
}

DWORD HostFolder::openExisting(const std::string& path, const struct stat& known, const OpenRequest& request,
                               std::unique_ptr<OpenFile>& file) {
    if (request.disposition == CREATE_NEW) {
        return ERROR_FILE_EXISTS;
    }
    if (!S_ISREG(known.st_mode)) {
        return ERROR_ACCESS_DENIED;
    }
    const bool changes = wants(request, GENERIC_WRITE) || truncates(request);
    if (changes || request.deleteOnClose) {
        if (const DWORD error = mayOverwrite(path, known, request); error != 0) {
            return error;
        }
    }
    const FileIdentity identity{known.st_dev, known.st_ino};
    std::unique_ptr<ShareTable::Entry> share;
    const DWORD access = sharedAccess(request) | (truncates(request) ? GENERIC_WRITE : 0);
    if (!shares_->open(identity, access, request.sharing, share)) {
        return ERROR_SHARING_VIOLATION;
    }
    HostDescriptor descriptor(::open(path.c_str(), openFlags(request)));
    if (!descriptor || (truncates(request) && ::ftruncate(descriptor.get(), 0) != 0)) {
        return windowsError(errno);
    }
    if (request.disposition == CREATE_ALWAYS) {
        const DWORD attributes = request.attributes | FILE_ATTRIBUTE_ARCHIVE;
        if (const DWORD error = storeAttributes(path.c_str(), known, attributes); error != 0) {
            return error;
        }
    }
    file = std::make_unique<HostFile>(std::move(descriptor), std::move(share), request);
    return 0;
}

DWORD HostFolder::facts(const std::string& below, FileFacts& facts) {
    std::string path;
    struct stat known;
    if (const DWORD error = locate(below, path, known); error != 0) {
        return error;
    }
    const std::string name = path.substr(path.rfind('/') + 1);
    if (isAscii(name)) {
        facts.name = name;
    } else if (!fromUtf8(machine_, name, facts.name)) {
        return ERROR_NO_UNICODE_TRANSLATION;
    }
    fillHostFacts(path.c_str(), known, facts);
    return 0;
}

DWORD HostFolder::list(const std::string& directory, std::vector<FileFacts>& entries) {
    std::unique_ptr<Listing> listing;
    DWORD error = search(directory, "*", listing);
    while (error == 0) {
        entries.emplace_back();
        error = listing->next(entries.back());
    }
    if (error == ERROR_NO_MORE_FILES) {
        entries.pop_back();
        error = 0;
    }
    return error;
}

DWORD HostFolder::search(const std::string& directory, const std::string& pattern,
                         std::unique_ptr<Listing>& listing) {
    std::string path;
    struct stat known;
    if (const DWORD error = locate(directory, path, known); error != 0) {
        return error == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND : error;
    }
    if (!S_ISDIR(known.st_mode)) {
        return ERROR_DIRECTORY;
    }
    return startHostListing(machine_, {path, directory.empty()}, toUtf8(machine_, pattern), listing);
}

DWORD HostFolder::setAttributes(const std::string& below, DWORD attributes) {
    std::string path;
    struct stat known;
    const DWORD error = locate(below, path, known);
    return error != 0 ? error : storeAttributes(path.c_str(), known, attributes);
}

DWORD HostFolder::removeFile(const std::string& below) {
    std::string path;
    struct stat known;
    DWORD error = locate(below, path, known);
    // A link that leads nowhere is found by its own facts.
    if (error == ERROR_FILE_NOT_FOUND && ::lstat(path.c_str(), &known) == 0) {
        error = 0;
    }
    if (error != 0) {
        return error;
    }
    if (S_ISDIR(known.st_mode) || (attributesOf(path.c_str(), known) & FILE_ATTRIBUTE_READONLY) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    if (!shares_->mayDelete({known.st_dev, known.st_ino})) {
        return ERROR_SHARING_VIOLATION;
    }
    return ::unlink(path.c_str()) == 0 ? 0 : windowsError(errno);
}

DWORD HostFolder::createDirectory(const std::string& below) {
    std::string path;
    struct stat known;
    const DWORD error = locate(below, path, known);
    if (error != ERROR_FILE_NOT_FOUND) {
        return error == 0 ? ERROR_ALREADY_EXISTS : error;
    }
    if (::mkdir(path.c_str(), 0777) == 0) {
        return 0;
    }
    return errno == EEXIST ? ERROR_ALREADY_EXISTS : errorOfMaking(errno);
}

DWORD HostFolder::removeDirectory(const std::string& below) {
    std::string path;
    struct stat known;
    if (const DWORD error = locate(below, path, known); error != 0) {
        return error;
    }
    if (!S_ISDIR(known.st_mode)) {
        return ERROR_DIRECTORY;
    }
    if (below.empty() || (attributesOf(path.c_str(), known) & FILE_ATTRIBUTE_READONLY) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    if (::rmdir(path.c_str()) == 0) {
        return 0;
    }
    // Of a link to a directory the link goes and the directory stays.
    if (errno == ENOTDIR && ::unlink(path.c_str()) == 0) {
        return 0;
    }
    return windowsError(errno);
}

DWORD HostFolder::volume(VolumeFacts& facts) {
    struct statvfs host;
    if (::statvfs((root() + '/').c_str(), &host) != 0) {
        return windowsError(errno);
    }
    facts = {"", static_cast<DWORD>(host.f_fsid ^ host.f_fsid >> 32), "HOST"};
    return 0;
}

DWORD HostFolder::setLabel(const std::string& /*label*/) {
    return ERROR_NOT_SUPPORTED;
}

DWORD HostFolder::openDevice(const OpenRequest& /*request*/, std::unique_ptr<OpenFile>& /*device*/) {
    return ERROR_FILE_NOT_FOUND;
}

}  // namespace winlayer
