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

StagedFile::StagedFile(fs::path target) : target_(std::move(target)) {
    std::string name = (folderOf(target_) / ("." + target_.filename().string() + ".part-XXXXXX")).string();
    const int file = mkstemp(name.data());
    if (file < 0)
        throw Problem(ExitCode::failure, "cannot write beside " + target_.string() + ": " + reason(errno));
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
        throw Problem(ExitCode::failure, "cannot write " + path_.string() + ": " + reason(error));
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
}

StagedFolder::~StagedFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    if (madeTarget_) fs::remove(target_, ignored);
}

void StagedFolder::commit(const fs::path& below) {
    moveEntries(path_ / below, target_);
}

}  // namespace tools
