// The host's files on a POSIX system, under the Windows layer.
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string_view>
#include <system_error>

#include "tools/common/host_files.h"

namespace tools {

const char* const pathSeparators = "/";

namespace host_files {

namespace fs = std::filesystem;

namespace {

HostError failure(const Path& file, int error) {
    return {file, std::generic_category().message(error)};
}

void check(const Path& file, const std::error_code& error) {
    if (error) throw HostError(file, error.message());
}

// Gives a file the permissions that open(2) would give; mkstemp makes it private.
void giveUsualPermissions(int file) {
    const mode_t mask = umask(0);
    umask(mask);
    (void)!fchmod(file, 0666 & ~mask);
}

Kind kindFrom(mode_t mode) {
    if (S_ISREG(mode)) return Kind::file;
    if (S_ISDIR(mode)) return Kind::folder;
    return S_ISLNK(mode) ? Kind::link : Kind::other;
}

constexpr int asFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// A folder without read permission can still be used.
int openFolder(int above, const char* name, int flags = 0) {
    const int folder = openat(above, name, asFolder | flags);
    if (folder >= 0 || errno != EACCES) return folder;
    return openat(above, name, O_PATH | O_DIRECTORY | O_CLOEXEC | flags);
}

// The part of a new entry's name that the host replaces.
constexpr std::string_view pattern = "XXXXXX";

// Opened again: users of a descriptor share one position in the listing.
DIR* openListing(int folder) {
    const int again = openat(folder, ".", asFolder);
    if (again < 0) return nullptr;
    DIR* const listing = fdopendir(again);
    const int error = errno;
    if (listing == nullptr) close(again);
    errno = error;
    return listing;
}

std::string hiddenPrefix(const std::string& like) {
    return "." + like + ".part-";
}

// Each creates an entry, completes its name and opens it.
int makeHiddenFile(const Path& folder, std::string& name) {
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) throw failure(folder, errno);
    giveUsualPermissions(file);
    return file;
}

// Returns no descriptor when another run removed the folder at once.
int makeHiddenFolder(const Path& folder, std::string& name) {
    if (mkdtemp(name.data()) == nullptr) throw failure(folder, errno);
    const int opened = open(name.c_str(), asFolder);
    const int error = errno;
    if (opened >= 0 || error == ENOENT) return opened;
    rmdir(name.c_str());
    throw failure(folder, error);
}

void removeUnlocked(const Path& path) {
    const int entry = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (flock(entry, LOCK_EX | LOCK_NB) == 0) removeTree(path);
    close(entry);
}

// The target of a link, one step.
Path linkTarget(const Path& link) {
    std::error_code error;
    const fs::path target = fs::read_symlink(link.string(), error);
    check(link, error);
    return (fs::path(link.string()).parent_path() / target).string();
}

// Empties a folder as far as possible and closes it. Must also work without memory, so nothing here throws;
// links are not followed.
void removeBelow(int folder) {
    DIR* const list = folder < 0 ? nullptr : fdopendir(folder);
    if (list == nullptr) return;
    while (const dirent* const entry = readdir(list)) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == ".." || unlinkat(folder, entry->d_name, 0) == 0) continue;
        removeBelow(openat(folder, entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        unlinkat(folder, entry->d_name, AT_REMOVEDIR);
    }
    closedir(list);
}

}  // namespace

Kind kindOf(const Path& name, std::string* why) {
    std::error_code error;
    const fs::file_status status = fs::status(name.string(), error);
    if (fs::is_regular_file(status)) return Kind::file;
    if (fs::is_directory(status)) return Kind::folder;
    if (fs::exists(status)) return Kind::other;
    if (why) *why = error.message();
    return Kind::missing;
}

std::uint64_t sizeOf(const Path& file) {
    std::error_code error;
    const std::uint64_t size = fs::file_size(file.string(), error);
    check(file, error);
    return size;
}

std::vector<Path> entries(const Path& folder) {
    std::vector<Path> found;
    for (const Folder::Entry& entry : Folder(folder).entries()) found.push_back(folder / entry.name);
    return found;
}

// A file whose folder does not exist is in none.
bool liesIn(const Path& file, const Path& folder) {
    const fs::path holder = fs::path(behindLink(file).string()).parent_path();
    std::error_code error;
    const fs::path inside = fs::canonical(holder.empty() ? "." : holder, error)
                                .lexically_relative(fs::canonical(folder.string(), error));
    return !error && !inside.empty() && *inside.begin() != "..";
}

Path behindLink(const Path& file) {
    constexpr int mostLinks = 40;  // the host's limit
    Path place = file;
    std::error_code ignored;
    for (int links = 0; fs::is_symlink(fs::symlink_status(place.string(), ignored)); ++links) {
        if (links == mostLinks) throw failure(file, ELOOP);
        place = linkTarget(place);
    }
    return place;
}

std::uint64_t freeBytes(const Path& folder) {
    std::error_code error;
    const fs::space_info space = fs::space(folder.string(), error);
    return error ? std::numeric_limits<std::uint64_t>::max() : space.available;
}

void makeFolder(const Path& folder) {
    if (mkdir(folder.c_str(), 0777) != 0) throw failure(folder, errno);
}

void move(const Path& from, const Path& to) {
    std::error_code error;
    fs::rename(from.string(), to.string(), error);
    check(to, error);
}

void removeFile(const Path& file) {
    std::remove(file.c_str());
}

void removeTree(const Path& folder) {
    removeBelow(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    removeFile(folder);
}

void removeEmptyFolder(const Path& folder) {
    removeFile(folder);
}

void synchronise(const Path& file) {
    const int opened = open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (opened < 0) throw failure(file, errno);
    const int error = fsync(opened) == 0 ? 0 : errno;
    close(opened);
    if (error != 0) throw failure(file, error);
}

Folder::Folder(const Path& path) : path_(path), descriptor_(openFolder(AT_FDCWD, path.c_str())) {
    if (descriptor_ < 0) throw failure(path_, errno);
}

Folder::Folder(const Folder& above, const std::string& name)
    : path_(above.path_ / name), descriptor_(openFolder(above.descriptor_, name.c_str(), O_NOFOLLOW)) {
    if (descriptor_ < 0) throw failure(path_, errno);
}

Folder::~Folder() {
    close(descriptor_);
}

std::vector<Folder::Entry> Folder::entries() const {
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(openListing(descriptor_), closedir);
    if (listing == nullptr) throw failure(path_, errno);
    std::vector<Entry> found;
    for (errno = 0; const dirent* entry = readdir(listing.get()); errno = 0) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        const auto mode = static_cast<mode_t>(DTTOIF(entry->d_type));
        found.push_back({name, entry->d_type == DT_UNKNOWN ? kindOf(name) : kindFrom(mode)});
    }
    if (errno != 0) throw failure(path_, errno);
    return found;
}

Kind Folder::kindOf(const std::string& name) const {
    struct stat facts {};
    if (fstatat(descriptor_, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0) {
        return kindFrom(facts.st_mode);
    }
    if (errno != ENOENT) throw failure(path_ / name, errno);
    return Kind::missing;
}

// A rename cannot cross mounts, not even of the same disk, nor leave a folder with a device number of its
// own, as some file systems have within one mount. (A file's own device number means nothing.)
bool Folder::movesReach(const std::string& name) const {
    struct statx here {
    }, there{};
    statx(descriptor_, ".", 0, STATX_TYPE | STATX_MNT_ID, &here);
    statx(descriptor_, name.c_str(), AT_SYMLINK_NOFOLLOW, STATX_TYPE | STATX_MNT_ID, &there);
    const auto device = [](const struct statx& facts) {
        return makedev(facts.stx_dev_major, facts.stx_dev_minor);
    };
    return here.stx_mnt_id == there.stx_mnt_id && (!S_ISDIR(there.stx_mode) || device(here) == device(there));
}

Folder Folder::below(const std::string& name) const {
    return {*this, name};
}

void Folder::move(const std::string& name, const Folder& to) const {
    if (renameat(descriptor_, name.c_str(), to.descriptor_, name.c_str()) != 0) {
        throw failure(to.path_ / name, errno);
    }
}

// Once for all files: syncing each takes a hundred times as long. The descriptor is older than the files, so
// errors of all of them are reported.
void Folder::synchronise() const {
    if (syncfs(descriptor_) != 0) throw failure(path_, errno);
}

// The entry is open and locked. On host file systems without locks nobody can tell who uses it; there nothing
// counts as abandoned.
struct HiddenEntry::Lock {
    ~Lock() { release(); }

    void release() {
        if (entry >= 0) close(entry);
        entry = -1;
    }

    // False when another run removed the entry before it was locked.
    bool take(int opened, const std::string& name) {
        release();
        entry = opened;
        flock(entry, LOCK_EX);
        struct stat held {
        }, named{};
        return fstat(entry, &held) == 0 && lstat(name.c_str(), &named) == 0 && held.st_ino == named.st_ino;
    }

    int entry = -1;
};

HiddenEntry::HiddenEntry(const Path& folder, const std::string& like, Kind kind)
    : lock_(std::make_unique<Lock>()) {
    const auto make = kind == Kind::folder ? makeHiddenFolder : makeHiddenFile;
    std::string name;
    int entry = -1;
    do {
        name = (folder / (hiddenPrefix(like) + std::string(pattern))).string();
        entry = make(folder, name);
    } while (!lock_->take(entry, name));
    path_ = std::move(name);
}

HiddenEntry::~HiddenEntry() {
    if (!moved_) removeTree(path_);
}

void HiddenEntry::moveTo(const Path& place) {
    move(path_, place);
    moved_ = true;
}

void removeAbandoned(const Path& folder, const std::string& like, Kind kind) {
    const std::string prefix = hiddenPrefix(like);
    const auto isHidden = [&](const std::string& name) {
        return name.starts_with(prefix) && name.size() == prefix.size() + pattern.size();
    };
    try {
        for (const Folder::Entry& entry : Folder(folder).entries()) {
            if (entry.kind == kind && isHidden(entry.name)) removeUnlocked(folder / entry.name);
        }
    } catch (const HostError&) {  // they remain
    }
}

std::string readText(const Path& file) {
    std::ifstream stream(file.string(), std::ios::binary);
    if (!stream) throw failure(file, errno);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const Path& file, const std::string& bytes) {
    std::ofstream stream(file.string(), std::ios::binary);
    if (!(stream << bytes).flush()) throw HostError(file, "not writable");
}

struct InputFile::Opened {
    int file;
    std::uint64_t size = 0;
};

InputFile::InputFile(const Path& file) : opened_(new Opened{open(file.c_str(), O_RDONLY | O_CLOEXEC)}) {
    struct stat facts {};
    if (opened_->file < 0 || fstat(opened_->file, &facts) != 0) {
        const int error = errno;
        close(opened_->file);
        throw failure(file, error);
    }
    opened_->size = static_cast<std::uint64_t>(facts.st_size);
}

InputFile::~InputFile() {
    close(opened_->file);
}

std::uint64_t InputFile::size() const {
    return opened_->size;
}

std::size_t InputFile::readAt(std::uint64_t offset, unsigned char* buffer, std::size_t count) const {
    const ssize_t got = pread(opened_->file, buffer, count, static_cast<off_t>(offset));
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

}  // namespace host_files

}  // namespace tools
