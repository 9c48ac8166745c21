#pragma once
#include <vector>

#include "tools/common/host_files.h"

namespace tools {

// A file that is written beside its target under a hidden name and replaces the target when complete.
// Whatever happens before commit(), the target remains unchanged.
class StagedFile {
public:
    // Creates an empty file beside the target, or beside the file that it links to, and removes what killed
    // runs have left there for the same target. Throws Problem: refused when the target exists and is not a
    // file, failure when the file cannot be created.
    explicit StagedFile(const Path& target);
    // Removes what was not committed.
    ~StagedFile() = default;
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    const Path& path() const { return staged_.path(); }
    const Path& target() const { return target_; }
    // Flushes the file to the medium, then renames it. Throws Problem, with the target unchanged.
    void commit();

private:
    Path target_;
    host_files::HiddenEntry staged_;
};

// A folder, created with its missing parents. Unless kept, the created folders are removed at the end if they
// are empty.
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

// A folder inside the target folder in which files are created and from which complete ones are moved to
// their final locations.
class StagedFolder {
public:
    // Creates the target folder if missing, and removes what killed runs have left in it. Throws Problem.
    explicit StagedFolder(const Path& target);
    // Removes what was not moved and, without a commit, the folders that were created for it.
    ~StagedFolder() = default;
    StagedFolder(const StagedFolder&) = delete;
    StagedFolder& operator=(const StagedFolder&) = delete;

    const Path& path() const { return staged_.path(); }
    // The number of files staged below one of its folders ("." is itself).
    std::size_t files(const std::string& below) const;
    // Flushes everything to the medium, then moves what is below one of its folders to the same location
    // below the target, replacing files, merging folders, following no links. Throws Problem before anything
    // is moved when something is in the way (refused for a link and a mount point, failure for a file where a
    // folder is needed and vice versa), and otherwise one that names the first entry that could not be moved;
    // the entries before it are in place, each complete.
    void commit(const std::string& below);

private:
    NewFolders made_;
    host_files::Folder target_;
    host_files::HiddenEntry staged_;
    host_files::Folder contents_;
};

}  // namespace tools
