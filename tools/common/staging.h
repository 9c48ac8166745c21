#pragma once
#include <vector>

#include "tools/common/host_files.h"

namespace tools {

// A file that is written beside its target under a hidden name and takes the target's place when it is whole.
// Whatever happens before commit() leaves the target as it was.
class StagedFile {
public:
    // Makes an empty file beside the target, or beside what it is a link to, and removes what killed runs
    // have left there for the same target. Throws Problem: refused for what is there and is not a file,
    // failure when the folder does not take it.
    explicit StagedFile(const Path& target);
    // Removes what was not committed.
    ~StagedFile() = default;
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    const Path& path() const { return staged_.path(); }
    const Path& target() const { return target_; }
    // Puts the contents on the medium, then renames. Throws Problem; the target is then still the old one.
    void commit();

private:
    Path target_;
    host_files::HiddenEntry staged_;
};

// A folder, made with those above it that are missing. What was made goes again at the end where it is empty,
// unless it is kept.
class NewFolders {
public:
    // Throws HostError.
    explicit NewFolders(const Path& folder);
    ~NewFolders();
    NewFolders(const NewFolders&) = delete;
    NewFolders& operator=(const NewFolders&) = delete;
    void keep() { made_.clear(); }

private:
    NewFolders() = default;
    void make(const Path& folder);

    std::vector<Path> made_;  // outermost first
};

// A folder inside the target folder in which files are made and from which whole ones are moved to their
// places.
class StagedFolder {
public:
    // Makes the target folder when it is missing, and removes what killed runs have left in it. Throws
    // Problem.
    explicit StagedFolder(const Path& target);
    // Removes what was not moved and, without a commit, the folders that were made for it.
    ~StagedFolder() = default;
    StagedFolder(const StagedFolder&) = delete;
    StagedFolder& operator=(const StagedFolder&) = delete;

    const Path& path() const { return staged_.path(); }
    // How many files are staged below one of its folders ("." is itself).
    std::size_t files(const std::string& below) const;
    // Puts everything on the medium, then moves what is below one of its folders to its place below
    // the target, replacing files, merging folders, following no link. Throws Problem before anything is
    // moved when something is in the way (refused for a link and a mount point, failure for a file or folder
    // that is needed as the other), and otherwise one that names the first entry that could not be moved; the
    // entries before it are in place, each whole.
    void commit(const std::string& below);

private:
    NewFolders made_;
    host_files::Folder target_;
    host_files::HiddenEntry staged_;
    host_files::Folder contents_;
};

}  // namespace tools
