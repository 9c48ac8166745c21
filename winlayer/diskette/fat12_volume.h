#pragma once
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "winlayer/diskette/directory.h"
#include "winlayer/diskette/open_files.h"
#include "winlayer/file_system/file_system.h"

namespace winlayer {

// A FAT12 volume on a medium. Paths as FileSystem has them. Every operation that changes something has it on
// the medium when it returns; when it fails, the FATs and directories are as before, as far as the medium
// allows. Failures are thrown as DiskError. Not locked.
class Fat12Volume {
public:
    // Reads the parameters; ERROR_UNRECOGNIZED_VOLUME when there are none. The store and the clock must
    // outlive it.
    Fat12Volume(SectorStore& store, const std::function<std::time_t()>& clock);

    const Fat12Layout& layout() const { return parts_.layout; }
    OpenFiles& openFiles() { return openFiles_; }

    // Nothing when the path's last element is not there. ERROR_PATH_NOT_FOUND when one before is missing or
    // no directory; ERROR_ACCESS_DENIED for the root, which has no entry.
    std::optional<FoundEntry> find(const std::string& path);
    // The same of an entry's facts, but the root has some.
    std::optional<FileFacts> facts(const std::string& path);
    std::vector<FileFacts> list(const std::string& path);

    // A new, empty file. ERROR_INVALID_NAME for a name that is not 8.3.
    FoundEntry createFile(const std::string& path, DWORD attributes);
    // Makes a file empty and gives it new attributes.
    void replaceFile(const EntryPlace& place, DWORD attributes);
    void setAttributes(const std::string& path, DWORD attributes);
    void removeFile(const std::string& path);
    void createDirectory(const std::string& path);
    void removeDirectory(const std::string& path);

    DirectoryEntry entry(const EntryPlace& place);
    DWORD read(const EntryPlace& place, std::uint64_t offset, std::span<std::byte> buffer);
    // Bytes written; fewer than given when the volume is full.
    DWORD write(const EntryPlace& place, std::uint64_t offset, std::span<const std::byte> data);
    void resize(const EntryPlace& place, std::uint64_t size);

    std::string label();
    DWORD serial();
    void setLabel(const std::string& label);

    // For sectors that were written below the volume. False when the parameters have changed with them, and
    // the volume must be mounted anew.
    bool notice(DWORD first, std::size_t count);
    void forgetAll();

private:
    struct Parent {
        Directory directory;
        std::string name;  // the path's last element
    };

    // Does the work and commits; a failure discards what was changed.
    template <class Work>
    void change(Work work);
    void requireWritable() const;
    Directory openDirectory(const std::string& path);
    Parent openParent(const std::string& path);
    FoundEntry existing(const Parent& parent) const;
    DirectoryEntry newEntry(const std::string& name, DWORD attributes) const;
    DosTime now() const { return toDosTime(clock_()); }

    SectorStore& store_;
    const std::function<std::time_t()>& clock_;
    VolumeParts parts_;
    OpenFiles openFiles_;
};

}  // namespace winlayer
