#pragma once
#include <optional>

#include "tools/common/host_files.h"

namespace tools {

// A file that is written beside its target under a hidden name and takes the target's place when it is whole.
// Whatever happens before commit() leaves the target as it was.
class StagedFile {
public:
    // Makes an empty file beside the target, or beside what it is a link to. Throws Problem: refused for what
    // is there and is not a file, failure when the folder does not take it.
    explicit StagedFile(const Path& target);
    // Removes what was not committed.
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    const Path& path() const { return path_; }
    const Path& target() const { return target_; }
    // Puts the contents on the medium, then renames. Throws Problem; the target is then still the old one.
    void commit();

private:
    Path target_;
    Path path_;
    bool committed_ = false;
};

// A folder inside the target folder in which files are made and from which whole ones are moved to their
// places.
class StagedFolder {
public:
    // Makes the target folder when it is missing. Throws Problem.
    explicit StagedFolder(Path target);
    // Removes what was not moved, and the target folder when this object made it and it is empty.
    ~StagedFolder();
    StagedFolder(const StagedFolder&) = delete;
    StagedFolder& operator=(const StagedFolder&) = delete;

    const Path& path() const { return path_; }
    // Puts everything on the medium, then moves it (or what is below one of its folders) to its place below
    // the target, replacing files, merging folders. Throws Problem before anything is moved when a file and a
    // folder are in each other's way, and otherwise one that names the first entry that could not be moved;
    // the entries before it are in place, each whole.
    void commit(const Path& below = {});

private:
    Path target_;
    Path path_;
    bool madeTarget_ = false;
    std::optional<host_files::FolderOnMedium> medium_;  // of path_
};

}  // namespace tools
