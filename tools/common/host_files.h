#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/common/host_path.h"

// File operations of the host that the programs need beyond the libraries' Windows calls. One source for each
// platform.

namespace tools {

// A failure of the host: what() names the file and the reason, reason() is the reason alone.
class HostError : public std::runtime_error {
public:
    HostError(const Path& file, const std::string& reason)
        : std::runtime_error(file.string() + ": " + reason), reason_(reason) {}
    const std::string& reason() const { return reason_; }

private:
    std::string reason_;
};

// Unless stated otherwise, these throw HostError when the host call fails.
namespace host_files {

enum class Kind { missing, file, folder, link, other };

// The kind of entry with a name; links are followed, so the result is never a link. Throws nothing: an entry
// that cannot be examined is missing, with the host's reason in `why`.
Kind kindOf(const Path& name, std::string* why = nullptr);
std::uint64_t sizeOf(const Path& file);
// The entries of a folder, in any order.
std::vector<Path> entries(const Path& folder);
// Whether a file with that name would be in the folder or below it.
bool liesIn(const Path& file, const Path& folder);
// The file that writing to `file` changes: follows links, also one whose target does not exist.
Path behindLink(const Path& file);
// Free bytes on the disk of a folder; the largest number when the host does not report them.
std::uint64_t freeBytes(const Path& folder);

// Creates a folder; its parent must exist.
void makeFolder(const Path& folder);
// Renames an entry on the same disk, replacing a file. The older file stays complete under its name until the
// new one replaces it, except on Windows 95, 98 and Me, where it has a hidden name meanwhile.
void move(const Path& from, const Path& to);
// Throw nothing: what cannot be removed remains.
void removeFile(const Path& file);
void removeTree(const Path& folder);
void removeEmptyFolder(const Path& folder);

// Flushes a file to the medium.
void synchronise(const Path& file);

// An open folder. Operations follow no link below it. Where the host can hold a folder open, the object
// refers to the same folder even if that is renamed or replaced.
class Folder {
public:
    struct Entry {
        std::string name;
        Kind kind;  // of the entry itself
    };

    // Opens the folder at a path; links in the path are followed.
    explicit Folder(const Path& path);
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const Path& path() const { return path_; }
    // In any order.
    std::vector<Entry> entries() const;
    Kind kindOf(const std::string& name) const;
    // Whether entries can be moved into the folder with that name, or replace the file with that name.
    bool movesReach(const std::string& name) const;
    // A folder in this one, which must not be a link.
    Folder below(const std::string& name) const;
    // Moves an entry to another folder on the same disk, like host_files::move.
    void move(const std::string& name, const Folder& to) const;
    // Flushes to the medium everything written into the folder since it was opened.
    void synchronise() const;

private:
    Folder(const Folder& above, const std::string& name);

    Path path_;
    int descriptor_ = -1;  // -1 where the host has none
};

// An empty file or folder with a unique hidden name, ".LIKE.part-" and a suffix, and a lock that marks it as
// in use for other runs. The destructor removes it, a folder with its contents.
class HiddenEntry {
public:
    // kind: file or folder.
    HiddenEntry(const Path& folder, const std::string& like, Kind kind);
    ~HiddenEntry();
    HiddenEntry(const HiddenEntry&) = delete;
    HiddenEntry& operator=(const HiddenEntry&) = delete;

    const Path& path() const { return path_; }
    // Moves it to its final name, where it stays; the lock ends with the object at the latest.
    void moveTo(const Path& place);

private:
    struct Lock;

    std::unique_ptr<Lock> lock_;
    Path path_;
    bool moved_ = false;
};
// Removes the hidden entries of that name and kind that no running process uses: those left behind by killed
// runs. Throws nothing: what cannot be removed remains.
void removeAbandoned(const Path& folder, const std::string& like, Kind kind);

// A complete text file written by a user, as UTF-8.
std::string readText(const Path& file);
void write(const Path& file, const std::string& bytes);

// A file with random read access.
class InputFile {
public:
    explicit InputFile(const Path& file);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    std::uint64_t size() const;
    // The number of bytes read; 0 at the end and after a failure.
    std::size_t readAt(std::uint64_t offset, unsigned char* buffer, std::size_t count) const;

private:
    struct Opened;
    std::unique_ptr<Opened> opened_;
};

}  // namespace host_files

}  // namespace tools
