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

enum class Kind { missing, file, folder, other };

// What a name stands for; links are followed. Throws nothing: what cannot be looked at is missing, and `why`
// says what the host said.
Kind kindOf(const Path& name, std::string* why = nullptr);
std::uint64_t sizeOf(const Path& file);
// The entries of a folder, in any order.
std::vector<Path> entries(const Path& folder);
// Whether a file of that name would lie in the folder or below it.
bool liesIn(const Path& file, const Path& folder);
// Where a file that is to be written really is: behind a link.
Path behindLink(const Path& file);
// Room on the disk that holds a folder, in bytes; the largest number when the host does not tell.
std::uint64_t freeBytes(const Path& folder);

// Makes a folder and those above it. False when it was there.
bool makeFolders(const Path& folder);
// An empty file or folder with a hidden name of its own. `like` is what the name begins with.
Path makeHiddenFile(const Path& folder, const std::string& like);
Path makeHiddenFolder(const Path& folder, const std::string& like);
// Gives an entry another name on the same disk. A file takes the place of an older one, which is whole under
// its name as long as the new one is not.
void move(const Path& from, const Path& to);
// Throw nothing: what cannot be removed stays.
void removeFile(const Path& file);
void removeTree(const Path& folder);
void removeEmptyFolder(const Path& folder);

// Puts the contents of a file on the medium.
void synchronise(const Path& file);
// Puts everything on the medium that was written into a folder since the object was made.
class FolderOnMedium {
public:
    explicit FolderOnMedium(const Path& folder);
    ~FolderOnMedium();
    FolderOnMedium(const FolderOnMedium&) = delete;
    FolderOnMedium& operator=(const FolderOnMedium&) = delete;
    void synchronise();

private:
    Path folder_;
    int descriptor_ = -1;  // where the host has such
};

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
