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

// A FAT12 volume on a medium. Paths are as in FileSystem. An operation has its changes on the medium when it
// returns; if it fails, the FATs and directories are as before, as far as the medium allows. Failures are
// thrown as DiskError. Not thread-safe.
class Fat12Volume {
public:
    // Reads the parameters; ERROR_UNRECOGNIZED_VOLUME if there are none. The store and the clock must outlive
    // it.
    Fat12Volume(SectorStore& store, const std::function<std::time_t()>& clock);

    const Fat12Layout& layout() const { return parts_.layout; }
    OpenFiles& openFiles() { return openFiles_; }

    // Nothing if only the path's last element is missing. ERROR_PATH_NOT_FOUND if an earlier one is missing
    // or not a directory; ERROR_ACCESS_DENIED for the root, which has no entry.
    std::optional<FoundEntry> find(const std::string& path);
    // The same for the facts of the entry, which the root has too.
    std::optional<FileFacts> facts(const std::string& path);
    std::vector<FileFacts> list(const std::string& path);

    // Creates an empty file. ERROR_INVALID_NAME for a name that is not 8.3.
    FoundEntry createFile(const std::string& path, DWORD attributes);
    // Truncates a file and sets its attributes.
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

    // Call after sectors were written below the volume. False if that has changed the parameters, and the
    // volume must be mounted again.
    bool notice(DWORD first, std::size_t count);
    void forgetAll();

private:
    struct Parent {
        Directory directory;
        std::string name;  // the path's last element
    };

    // Runs the work and commits; on failure discards the changes.
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
