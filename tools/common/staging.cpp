#include "tools/common/staging.h"

#include "tools/common/exit_code.h"

namespace tools {

using host_files::Kind;

namespace {

Path folderOf(const Path& file) {
    return file.parent().empty() ? Path(".") : file.parent();
}

// Where a file that is to be written really is: behind a link, and nothing but a file.
Path placeOf(const Path& target) {
    const Kind kind = host_files::kindOf(target);
    if (kind == Kind::file || kind == Kind::missing) return host_files::behindLink(target);
    throw Problem(ExitCode::refused, target.string() + " is there and is not a file; name another");
}

// What `work` gives; a failure of the host becomes a problem that says what could not be done.
template <class Work>
auto orProblem(const std::string& what, Work work) {
    try {
        return work();
    } catch (const HostError& error) {
        throw Problem(ExitCode::failure, what + ": " + error.reason());
    }
}

// A file cannot take a folder's place nor a folder a file's; better told before the first one is moved.
void refuseConflicts(const Path& from, const Path& to) {
    for (const Path& entry : host_files::entries(from)) {
        const Path place = to / entry.filename();
        const Kind there = host_files::kindOf(place);
        if (there == Kind::missing) continue;
        const bool folder = host_files::kindOf(entry) == Kind::folder;
        if (folder != (there == Kind::folder)) {
            throw Problem(ExitCode::failure, "cannot put " + place.string() + " in place: a " +
                                                 (folder ? "file" : "folder") +
                                                 " of that name is in the way; nothing was changed");
        }
        if (folder) refuseConflicts(entry, place);
    }
}

void moveEntries(const Path& from, const Path& to) {
    for (const Path& entry : host_files::entries(from)) {
        const Path place = to / entry.filename();
        if (host_files::kindOf(entry) == Kind::folder && host_files::kindOf(place) == Kind::folder) {
            moveEntries(entry, place);
        } else {
            orProblem("cannot put " + place.string() + " in place", [&] { host_files::move(entry, place); });
        }
    }
}

}  // namespace

StagedFile::StagedFile(const Path& target) : target_(placeOf(target)) {
    path_ = orProblem("cannot write " + target_.string(), [&] {
        return host_files::makeHiddenFile(folderOf(target_), target_.filename().string() + ".");
    });
}

StagedFile::~StagedFile() {
    if (!committed_) host_files::removeFile(path_);
}

void StagedFile::commit() {
    orProblem("cannot write " + target_.string(), [&] { host_files::synchronise(path_); });
    orProblem("cannot replace " + target_.string(), [&] { host_files::move(path_, target_); });
    committed_ = true;
}

StagedFolder::StagedFolder(Path target) : target_(std::move(target)) {
    madeTarget_ =
        orProblem("cannot make " + target_.string(), [&] { return host_files::makeFolders(target_); });
    try {
        path_ = orProblem("cannot write in " + target_.string(),
                          [&] { return host_files::makeHiddenFolder(target_, ""); });
    } catch (const Problem&) {
        if (madeTarget_) host_files::removeEmptyFolder(target_);
        throw;
    }
    medium_.emplace(path_);
}

StagedFolder::~StagedFolder() {
    medium_.reset();
    host_files::removeTree(path_);
    if (madeTarget_) host_files::removeEmptyFolder(target_);
}

void StagedFolder::commit(const Path& below) {
    refuseConflicts(path_ / below, target_);
    orProblem("cannot write in " + target_.string(), [&] { medium_->synchronise(); });
    moveEntries(path_ / below, target_);
}

}  // namespace tools
