#include "tools/common/staging.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "tools/common/exit_code.h"

namespace tools {

namespace fs = std::filesystem;

namespace {

std::string reason(int error) {
    return std::generic_category().message(error);
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// Where a file that is to be written really is: behind a link, and nothing but a file.
fs::path placeOf(const fs::path& target) {
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Problem(ExitCode::refused, target.string() + " is there and is not a file; name another");
    }
    return fs::is_symlink(fs::symlink_status(target, error)) ? fs::weakly_canonical(target) : target;
}

// Puts a file's contents on the medium; 0 or the host's error.
int synchronise(const fs::path& path) {
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (file < 0) return errno;
    const int error = fsync(file) == 0 ? 0 : errno;
    close(file);
    return error;
}

// The permissions that a file made by open(2) would get, which mkstemp's private file has not.
void giveUsualPermissions(int file) {
    const mode_t mask = umask(0);
    umask(mask);
    (void)!fchmod(file, 0666 & ~mask);
}

// A file cannot take a folder's place nor a folder a file's; better told before the first one is moved.
void refuseConflicts(const fs::path& from, const fs::path& to) {
    for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
        const fs::path place = to / entry.path().filename();
        std::error_code ignored;
        const fs::file_status there = fs::status(place, ignored);
        if (!fs::exists(there)) continue;
        if (entry.is_directory() != fs::is_directory(there)) {
            throw Problem(ExitCode::failure, "cannot put " + place.string() + " in place: a " +
                                                 (entry.is_directory() ? "file" : "folder") +
                                                 " of that name is in the way; nothing was changed");
        }
        if (entry.is_directory()) refuseConflicts(entry.path(), place);
    }
}

void moveEntries(const fs::path& from, const fs::path& to) {
    std::vector<fs::path> entries;
    for (const fs::directory_entry& entry : fs::directory_iterator(from)) entries.push_back(entry.path());
    for (const fs::path& entry : entries) {
        const fs::path place = to / entry.filename();
        std::error_code error;
        const bool merge = fs::is_directory(fs::symlink_status(entry)) && fs::is_directory(place, error);
        if (merge) {
            moveEntries(entry, place);
            continue;
        }
        fs::rename(entry, place, error);
        if (error)
            throw Problem(ExitCode::failure,
                          "cannot put " + place.string() + " in place: " + error.message());
    }
}

}  // namespace

StagedFile::StagedFile(const fs::path& target) : target_(placeOf(target)) {
    std::string name = (folderOf(target_) / ("." + target_.filename().string() + ".part-XXXXXX")).string();
    const int file = mkstemp(name.data());
    if (file < 0) throw Problem(ExitCode::failure, "cannot write " + target_.string() + ": " + reason(errno));
    giveUsualPermissions(file);
    close(file);
    path_ = name;
}

StagedFile::~StagedFile() {
    std::error_code ignored;
    if (!committed_) fs::remove(path_, ignored);
}

void StagedFile::commit() {
    if (const int error = synchronise(path_)) {
        throw Problem(ExitCode::failure, "cannot write " + target_.string() + ": " + reason(error));
    }
    std::error_code error;
    fs::rename(path_, target_, error);
    if (error)
        throw Problem(ExitCode::failure, "cannot replace " + target_.string() + ": " + error.message());
    committed_ = true;
}

StagedFolder::StagedFolder(fs::path target) : target_(std::move(target)) {
    std::error_code error;
    madeTarget_ = fs::create_directories(target_, error);
    if (error) throw Problem(ExitCode::failure, "cannot make " + target_.string() + ": " + error.message());
    std::string name = (target_ / ".part-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        const std::string why = reason(errno);
        if (madeTarget_) fs::remove(target_, error);
        throw Problem(ExitCode::failure, "cannot write in " + target_.string() + ": " + why);
    }
    path_ = name;
    folder_ = open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

StagedFolder::~StagedFolder() {
    close(folder_);
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    if (madeTarget_) fs::remove(target_, ignored);
}

void StagedFolder::commit(const fs::path& below) {
    refuseConflicts(path_ / below, target_);
    // Once for all files: waiting for each takes a hundred times as long. The descriptor is older than the
    // files, so that what went wrong with any of them is told.
    if (syncfs(folder_) != 0) {
        throw Problem(ExitCode::failure, "cannot write in " + target_.string() + ": " + reason(errno));
    }
    moveEntries(path_ / below, target_);
}

}  // namespace tools
