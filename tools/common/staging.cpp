#include "tools/common/staging.h"

#include <algorithm>

#include "tools/common/exit_code.h"

namespace tools {

using host_files::Folder;
using host_files::HiddenEntry;
using host_files::Kind;

namespace {

// A target can be spelt in many ways; this name is always the same.
constexpr const char* folderLike = "unpacked";

Path folderOf(const Path& file) {
    return file.parent().empty() ? Path(".") : file.parent();
}

// The result of `work`; a host failure becomes a problem that says what could not be done.
template <class Work>
auto orProblem(const std::string& what, Work work) {
    try {
        return work();
    } catch (const HostError& error) {
        throw Problem(ExitCode::failure, what + ": " + error.reason());
    }
}

// The file to write: follows links; anything but a file is refused.
Path placeOf(const Path& target) {
    const Kind kind = host_files::kindOf(target);
    if (kind != Kind::file && kind != Kind::missing) {
        throw Problem(ExitCode::refused, target.string() + " is there and is not a file; name another");
    }
    return orProblem("cannot write " + target.string(), [&] { return host_files::behindLink(target); });
}

// A new hidden entry; removes what killed runs have left under such names.
HiddenEntry hiddenEntry(const Path& folder, const std::string& like, Kind kind, const std::string& what) {
    host_files::removeAbandoned(folder, like, kind);
    return orProblem(what, [&] { return HiddenEntry(folder, like, kind); });
}

Problem inTheWay(const Path& place, Kind there) {
    const std::string& name = place.string();
    if (there == Kind::link) {
        return {ExitCode::refused, name + " is a link, and none is followed; nothing was changed"};
    }
    if (there == Kind::other) {
        return {ExitCode::refused, name + " is neither a file nor a folder; nothing was changed"};
    }
    return {ExitCode::failure, "cannot put " + name + " in place: a " +
                                   (there == Kind::folder ? "folder" : "file") +
                                   " of that name is in the way; nothing was changed"};
}

Problem mountedAt(const Path& place) {
    return {ExitCode::refused,
            place.string() + " is a mount point, across which nothing can be moved; nothing was changed"};
}

// A file may only replace a file, and a folder only be merged with one; checked before anything is moved.
void refuseConflicts(const Folder& from, const Folder& to) {
    for (const auto& [name, kind] : from.entries()) {
        const Kind there = to.kindOf(name);
        if (there == Kind::missing) continue;
        if (there != kind) throw inTheWay(to.path() / name, there);
        if (!to.movesReach(name)) throw mountedAt(to.path() / name);
        if (kind == Kind::folder) refuseConflicts(from.below(name), to.below(name));
    }
}

void moveEntries(const Folder& from, const Folder& to) {
    for (const Folder::Entry& entry : from.entries()) {
        if (entry.kind == Kind::folder && to.kindOf(entry.name) == Kind::folder) {
            moveEntries(from.below(entry.name), to.below(entry.name));
        } else {
            orProblem("cannot put " + (to.path() / entry.name).string() + " in place",
                      [&] { from.move(entry.name, to); });
        }
    }
}

std::size_t filesIn(const Folder& folder) {
    std::size_t count = 0;
    for (const auto& [name, kind] : folder.entries()) {
        count += kind == Kind::folder ? filesIn(folder.below(name)) : 1;
    }
    return count;
}

}  // namespace

StagedFile::StagedFile(const Path& target)
    : target_(placeOf(target)),
      staged_(hiddenEntry(folderOf(target_), target_.filename().string(), Kind::file,
                          "cannot write " + target_.string())) {}

void StagedFile::commit() {
    orProblem("cannot write " + target_.string(), [&] { host_files::synchronise(path()); });
    orProblem("cannot replace " + target_.string(), [&] { staged_.moveTo(target_); });
}

// Delegates so that the destructor runs even if creating a folder throws.
NewFolders::NewFolders(const Path& folder) : NewFolders() {
    make(folder);
}

NewFolders::~NewFolders() {
    std::for_each(made_.rbegin(), made_.rend(), host_files::removeEmptyFolder);
}

void NewFolders::make(const Path& folder) {
    const auto isThere = [&] { return host_files::kindOf(folder) == Kind::folder; };
    if (isThere()) return;
    const Path above = folder.parent();
    if (!above.empty() && !(above == folder)) make(above);
    if (isThere()) return;    // the name has a trailing separator
    made_.push_back(folder);  // removing one that was not created does nothing
    host_files::makeFolder(folder);
}

StagedFolder::StagedFolder(const Path& target)
    : made_(orProblem("cannot make " + target.string(), [&] { return NewFolders(target); })),
      target_(orProblem("cannot write in " + target.string(), [&] { return Folder(target); })),
      staged_(hiddenEntry(target, folderLike, Kind::folder, "cannot write in " + target.string())),
      contents_(orProblem("cannot write in " + target.string(), [&] { return Folder(path()); })) {}

std::size_t StagedFolder::files(const std::string& below) const {
    return orProblem("cannot read " + path().string(), [&] { return filesIn(contents_.below(below)); });
}

void StagedFolder::commit(const std::string& below) {
    const std::string what = "cannot write in " + target_.path().string();
    const Folder from = orProblem(what, [&] { return contents_.below(below); });
    orProblem(what, [&] { refuseConflicts(from, target_); });
    orProblem(what, [&] { contents_.synchronise(); });
    orProblem(what, [&] { moveEntries(from, target_); });
    made_.keep();
}

}  // namespace tools
