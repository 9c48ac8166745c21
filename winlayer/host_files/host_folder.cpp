#include "winlayer/host_files/host_folder.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "winlayer/base/host_errors.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/host_files/cached_file.h"
#include "winlayer/host_files/host_attributes.h"
#include "winlayer/host_files/host_file.h"
#include "winlayer/host_files/host_listing.h"
#include "winlayer/text/case_folding.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {

namespace {

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::pair<std::string_view, std::string_view> splitHostPath(std::string_view path) {
    const std::size_t separator = path.rfind('/');
    return {path.substr(0, separator), path.substr(separator + 1)};
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

// If creating fails because something is missing, it is the parent directory.
DWORD errorOfMaking(int hostError) {
    return hostError == ENOENT ? ERROR_PATH_NOT_FOUND : windowsError(hostError);
}

// The size, if only this open can change it.
std::optional<std::uint64_t> lastingSize(const OpenRequest& request, std::uint64_t size) {
    const bool soleWriter = wants(request, GENERIC_WRITE) && (request.sharing & FILE_SHARE_WRITE) == 0;
    return soleWriter ? std::optional(size) : std::nullopt;
}

// The access that other opens of the file must share.
DWORD sharedAccess(const OpenRequest& request) {
    return request.access | (request.deleteOnClose ? deleteAccess : 0);
}

// Gets the facts of a path's target, and whether the path itself is a link.
bool look(const std::string& path, struct stat& facts, bool& link) {
    link = false;
    if (::lstat(path.c_str(), &facts) != 0) {
        return false;
    }
    link = S_ISLNK(facts.st_mode);
    return !link || ::stat(path.c_str(), &facts) == 0;
}

// A regular file might have become a pipe since it was examined: opening must not wait for its other end.
int openFlags(const OpenRequest& request) {
    const bool writing = wants(request, GENERIC_WRITE) || truncates(request);
    const bool reading = wants(request, GENERIC_READ);
    const int mode = writing                       ? (reading ? O_RDWR : O_WRONLY)
                     : reading || creates(request) ? O_RDONLY
                                                   : O_PATH;
    return mode | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | (request.writeThrough ? O_DSYNC : 0);
}

}  // namespace

HostFolder::HostFolder(const SystemSettings& settings, std::shared_ptr<HostKnowledge> knowledge,
                       std::string root)
    : settings_(settings), knowledge_(std::move(knowledge)), root_(std::move(root)) {}

const std::string& HostFolder::root() {
    return root_;
}

std::string HostFolder::hostPath(const std::string& below) {
    std::string path = root();
    path.reserve(path.size() + 1 + below.size());
    path += '/';
    const std::size_t start = path.size();
    path += isAscii(below) ? below : toUtf8(settings_, below);
    std::replace(path.begin() + static_cast<std::ptrdiff_t>(start), path.end(), '\\', '/');
    return path;
}

DWORD HostFolder::locate(const std::string& below, std::string& path, struct stat& facts) {
    Found found;
    const DWORD error = locate(below, found);
    path = std::move(found.path);
    facts = found.facts;
    return error;
}

DWORD HostFolder::locate(const std::string& below, Found& found) {
    const DWORD error = find(below, found);
    if (error == 0 && knowledge_->shares->passOn({found.facts.st_dev, found.facts.st_ino})) {
        return look(found.path, found.facts, found.link) ? 0 : windowsError(errno);
    }
    return error;
}

// For operations on the entry itself: a link that leads nowhere, or back to itself, exists too.
DWORD HostFolder::locateEntry(const std::string& below, Found& found) {
    const DWORD error = locate(below, found);
    return error != 0 && found.link && ::lstat(found.path.c_str(), &found.facts) == 0 ? 0 : error;
}

DWORD HostFolder::find(const std::string& below, Found& found) {
    found.path = hostPath(below);
    if (look(found.path, found.facts, found.link)) {
        return 0;
    }
    if (errno != ENOENT && errno != ENOTDIR) {
        return windowsError(errno);
    }
    DWORD error = locateWithoutCase(found.path);
    bool there = error == 0 && look(found.path, found.facts, found.link);
    // A name remembered without a check may no longer exist.
    if (error == 0 && !there && knowledge_->alone && knowledge_->names.forget()) {
        found.path = hostPath(below);
        error = locateWithoutCase(found.path);
        there = error == 0 && look(found.path, found.facts, found.link);
    }
    return error != 0 || there ? error : windowsError(errno);
}

// Usually the folder is spelt as stored and only the last name is missing or spelt differently.
DWORD HostFolder::locateWithoutCase(std::string& path) {
    const auto [folder, name] = splitHostPath(path);
    std::string found;
    if (knowledge_->names.find(std::string(folder), name, found)) {
        if (found.empty()) {
            return ERROR_FILE_NOT_FOUND;
        }
        path = std::string(folder) + '/' + found;
        return 0;
    }
    const std::string wanted = path.substr(root().size());
    path.resize(root().size());
    return walkWithoutCase(wanted, path);
}

DWORD HostFolder::walkWithoutCase(const std::string& wanted, std::string& path) {
    std::size_t start = 1;
    while (start <= wanted.size()) {
        const std::size_t end = std::min(wanted.find('/', start), wanted.size());
        const std::string element = wanted.substr(start, end - start);
        start = end + 1;
        const std::string folder = path;
        path += '/';
        path += element;
        struct stat facts;
        if (::lstat(path.c_str(), &facts) != 0) {
            std::string found = element;
            const bool inFolder = errno != ENOTDIR && knowledge_->names.find(folder, element, found);
            if (!inFolder || found.empty()) {
                return inFolder && end == wanted.size() ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
            }
            path.replace(folder.size() + 1, std::string::npos, found);
        }
    }
    return 0;
}

// Whether the name is known to be absent without reading its folder; sets its host path.
bool HostFolder::isAbsent(const std::string& below, std::string& path) {
    path = hostPath(below);
    const auto [folder, name] = splitHostPath(path);
    return knowledge_->names.knowsAbsent(std::string(folder), name);
}

DWORD HostFolder::open(const std::string& below, const OpenRequest& request, std::unique_ptr<OpenFile>& file,
                       bool& existed) {
    std::string path;
    if (creates(request) && isAbsent(below, path)) {
        existed = false;
        // Another program may have created it first.
        const DWORD error = create(path, request, file);
        if (error != ERROR_FILE_EXISTS) {
            return error;
        }
    }
    Found found;
    const DWORD error = locate(below, found);
    existed = error == 0;
    if (existed) {
        return openExisting(found, request, file);
    }
    return error == ERROR_FILE_NOT_FOUND && creates(request) ? create(found.path, request, file) : error;
}

DWORD HostFolder::create(const std::string& path, const OpenRequest& request,
                         std::unique_ptr<OpenFile>& file) {
    const DWORD attributes = (request.attributes & keptAttributes) | FILE_ATTRIBUTE_ARCHIVE;
    const bool modeHoldsAll = (attributes & ~FILE_ATTRIBUTE_READONLY) == FILE_ATTRIBUTE_ARCHIVE;
    const bool readOnly = modeHoldsAll && attributes != FILE_ATTRIBUTE_ARCHIVE;
    HostDescriptor descriptor(
        ::open(path.c_str(), openFlags(request) | O_CREAT | O_EXCL, readOnly ? 0444 : 0666));
    if (!descriptor) {
        return errorOfMaking(errno);
    }
    const auto [folder, name] = splitHostPath(path);
    knowledge_->names.made(std::string(folder), name);
    if (!modeHoldsAll) {
        struct stat facts {};
        ::fstat(descriptor.get(), &facts);
        if (const DWORD error = storeAttributes(path.c_str(), facts, attributes); error != 0) {
            ::unlink(path.c_str());
            return error;
        }
    }
    auto share = knowledge_->shares->add(descriptor.get(), sharedAccess(request), request.sharing);
    file = fileFor(std::move(descriptor), std::move(share), request, 0);
    return 0;
}

std::unique_ptr<OpenFile> HostFolder::fileFor(HostDescriptor descriptor,
                                              std::unique_ptr<ShareTable::Entry> share,
                                              const OpenRequest& request, std::uint64_t size) const {
    const bool cached = knowledge_->alone && !request.writeThrough;
    auto file = std::make_unique<HostFile>(std::move(descriptor), std::move(share),
                                           cached ? std::nullopt : lastingSize(request, size));
    if (cached) {
        return std::make_unique<CachedFile>(std::move(file), size);
    }
    return file;
}

// Windows refuses to overwrite a hidden or system file unless the request has that attribute too.
DWORD HostFolder::mayOverwrite(const std::string& path, const struct stat& known,
                               const OpenRequest& request) const {
    const DWORD attributes = attributesOf(path.c_str(), known);
    constexpr DWORD named = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const bool unnamed =
        request.disposition == CREATE_ALWAYS && (attributes & named & ~request.attributes) != 0;
    return (attributes & FILE_ATTRIBUTE_READONLY) != 0 || unnamed ? ERROR_ACCESS_DENIED : 0;
}

DWORD HostFolder::openExisting(const Found& found, const OpenRequest& request,
                               std::unique_ptr<OpenFile>& file) {
    const auto& [path, known, link] = found;
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
    if (const DWORD error = knowledge_->shares->open(identity, access, request.sharing, share); error != 0) {
        return error;
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
    const auto size = truncates(request) ? 0 : static_cast<std::uint64_t>(known.st_size);
    // As no other program changes the file, its descriptor and its path have the same facts.
    if (knowledge_->alone && access == GENERIC_READ && !link) {
        share->tellPath(path, descriptor.get());
    }
    file = fileFor(std::move(descriptor), std::move(share), request, size);
    return 0;
}

bool HostFolder::factsOfLast(const std::string& path, FileFacts& facts) const {
    return knowledge_->alone && knowledge_->shares->lookAtLast(path, [&](int descriptor) {
        struct stat known {};
        ::fstat(descriptor, &known);
        fillHostFacts(descriptor, known, facts);
    });
}

DWORD HostFolder::facts(const std::string& below, FileFacts& facts) {
    Found found;
    found.path = hostPath(below);
    const bool seen = factsOfLast(found.path, facts);
    if (const DWORD error = seen ? 0 : locateEntry(below, found); error != 0) {
        return error;
    }
    const std::string name = found.path.substr(found.path.rfind('/') + 1);
    if (isAscii(name)) {
        facts.name = name;
    } else if (!fromUtf8(settings_, name, facts.name)) {
        return ERROR_NO_UNICODE_TRANSLATION;
    }
    if (!seen) {
        fillHostFacts(found.path.c_str(), found.facts, facts);
    }
    if (found.link) {
        showLink(facts);
    }
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
    Found found;
    if (const DWORD error = locate(directory, found); error != 0) {
        return error == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND : error;
    }
    if (!S_ISDIR(found.facts.st_mode)) {
        return ERROR_DIRECTORY;
    }
    return startHostListing(settings_, *knowledge_->shares, {found.path, directory.empty(), found.link},
                            toUtf8(settings_, pattern), listing);
}

DWORD HostFolder::setAttributes(const std::string& below, DWORD attributes) {
    Found found;
    if (const DWORD error = locateEntry(below, found); error != 0) {
        return error;
    }
    if (found.link) {
        return (attributes & keptAttributes & ~FILE_ATTRIBUTE_ARCHIVE) == 0 ? 0 : ERROR_NOT_SUPPORTED;
    }
    return storeAttributes(found.path.c_str(), found.facts, attributes);
}

DWORD HostFolder::removeFile(const std::string& below) {
    Found found;
    if (const DWORD error = locateEntry(below, found); error != 0) {
        return error;
    }
    const auto& [path, known, link] = found;
    if (S_ISDIR(known.st_mode) || isReadOnly(found)) {
        return ERROR_ACCESS_DENIED;
    }
    if (!link && !knowledge_->shares->mayDelete({known.st_dev, known.st_ino})) {
        return ERROR_SHARING_VIOLATION;
    }
    forgetPaths();
    return ::unlink(path.c_str()) == 0 ? 0 : windowsError(errno);
}

// The target of a link may be read-only; the link itself can still be removed.
bool HostFolder::isReadOnly(const Found& found) {
    return !found.link && (attributesOf(found.path.c_str(), found.facts) & FILE_ATTRIBUTE_READONLY) != 0;
}

// Remembered paths may lead elsewhere from now on.
void HostFolder::forgetPaths() {
    knowledge_->shares->forgetLast();
    if (knowledge_->alone) {
        knowledge_->names.forget();
    }
}

DWORD HostFolder::createDirectory(const std::string& below) {
    std::string path;
    struct stat known;
    const DWORD error = isAbsent(below, path) ? ERROR_FILE_NOT_FOUND : locate(below, path, known);
    if (error != ERROR_FILE_NOT_FOUND) {
        return error == 0 ? ERROR_ALREADY_EXISTS : error;
    }
    if (::mkdir(path.c_str(), 0777) == 0) {
        const auto [folder, name] = splitHostPath(path);
        knowledge_->names.made(std::string(folder), name);
        return 0;
    }
    return errno == EEXIST ? ERROR_ALREADY_EXISTS : errorOfMaking(errno);
}

DWORD HostFolder::removeDirectory(const std::string& below) {
    Found found;
    if (const DWORD error = locateEntry(below, found); error != 0) {
        return error;
    }
    if (!S_ISDIR(found.facts.st_mode)) {
        return ERROR_DIRECTORY;
    }
    if (below.empty() || isReadOnly(found)) {
        return ERROR_ACCESS_DENIED;
    }
    forgetPaths();
    // Removes a link to a directory, not the directory.
    const int failed = found.link ? ::unlink(found.path.c_str()) : ::rmdir(found.path.c_str());
    return failed == 0 ? 0 : windowsError(errno);
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
