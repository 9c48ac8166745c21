#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/common/host_path.h"

// What the programs ask of the files of the host, beyond what the libraries do by Windows' calls. One source
// for each platform.

namespace tools {

// A failure of the host: what() names the file and the reason, reason() gives the reason alone.
class HostError : public std::runtime_error {
public:
    HostError(const Path& file, const std::string& reason)
        : std::runtime_error(file.string() + ": " + reason), reason_(reason) {}
    const std::string& reason() const { return reason_; }

private:
    std::string reason_;
};

// Unless a comment says otherwise these throw HostError when the host refuses.
namespace host_files {

enum class Kind { missing, file, folder, link, other };

// What a name stands for; links are followed, so that none is a link. Throws nothing: what cannot be looked
// at is missing, and `why` says what the host said.
Kind kindOf(const Path& name, std::string* why = nullptr);
std::uint64_t sizeOf(const Path& file);
// The entries of a folder, in any order.
std::vector<Path> entries(const Path& folder);
// Whether a file of that name would lie in the folder or below it.
bool liesIn(const Path& file, const Path& folder);
// Where a file that is to be written really is: behind a link, also one to a file that is not there yet.
Path behindLink(const Path& file);
// Room on the disk that holds a folder, in bytes; the largest number when the host does not tell.
std::uint64_t freeBytes(const Path& folder);

// Makes one folder.
void makeFolder(const Path& folder);
// Gives an entry another name on the same disk. A file takes the place of an older one, which is whole under
// its name as long as the new one is not.
void move(const Path& from, const Path& to);
// Throw nothing: what cannot be removed stays.
void removeFile(const Path& file);
void removeTree(const Path& folder);
void removeEmptyFolder(const Path& folder);

// Puts the contents of a file on the medium.
void synchronise(const Path& file);

// A folder that is open. What is done in it follows no link below it, and where the host can hold a folder
// open it stays this one, whatever takes its name meanwhile.
class Folder {
public:
    struct Entry {
        std::string name;
        Kind kind;  // of the entry itself
    };

    // The folder that a path leads to, through links if need be.
    explicit Folder(const Path& path);
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const Path& path() const { return path_; }
    // In any order.
    std::vector<Entry> entries() const;
    Kind kindOf(const std::string& name) const;
    // Whether other entries can be moved into the folder, or to the place of the file, of that name.
    bool movesReach(const std::string& name) const;
    // A folder in it, which must be no link.
    Folder below(const std::string& name) const;
    // Moves an entry to another folder on the same disk, as host_files::move does.
    void move(const std::string& name, const Folder& to) const;
    // Puts everything on the medium that was written into the folder since it was opened.
    void synchronise() const;

private:
    Folder(const Folder& above, const std::string& name);

    Path path_;
    int descriptor_ = -1;  // where the host has such
};

// An empty file or folder with a hidden name of its own, ".LIKE.part-" and something, and a lock that shows
// other runs that it is in use. It is removed at the end, a folder with everything in it.
class HiddenEntry {
public:
    // kind: file or folder.
    HiddenEntry(const Path& folder, const std::string& like, Kind kind);
    ~HiddenEntry();
    HiddenEntry(const HiddenEntry&) = delete;
    HiddenEntry& operator=(const HiddenEntry&) = delete;

    const Path& path() const { return path_; }
    // Moves it to its place, where it stays; the lock ends at the latest with the object.
    void moveTo(const Path& place);

private:
    struct Lock;

    std::unique_ptr<Lock> lock_;
    Path path_;
    bool moved_ = false;
};
// Removes the hidden entries of such names and that kind that no living process has: what runs left that were
// killed. Throws nothing: what cannot be removed stays.
void removeAbandoned(const Path& folder, const std::string& like, Kind kind);

// A whole text file of people, as UTF-8.
std::string readText(const Path& file);
void write(const Path& file, const std::string& bytes);

// A file that is read at any place.
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
