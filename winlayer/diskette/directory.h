#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "winlayer/diskette/dos_time.h"
#include "winlayer/diskette/fat12_layout.h"
#include "winlayer/diskette/fat_table.h"
#include "winlayer/diskette/sector_cache.h"
#include "winlayer/diskette/short_name.h"

namespace winlayer {

// The parts that the volume's operations work on.
struct VolumeParts {
    explicit VolumeParts(SectorStore& store);

    SectorCache cache;
    Fat12Layout layout;
    FatTable fat;
};

// The position of a directory entry on the medium.
struct EntryPlace {
    DWORD sector = 0;
    DWORD offset = 0;
    bool operator==(const EntryPlace&) const = default;
};

// The fields of an entry that the volume uses.
struct DirectoryEntry {
    static constexpr BYTE labelAttribute = 0x08;

    RawName name{};
    BYTE attributes = 0;
    DosTime written;
    DWORD firstCluster = 0;
    DWORD size = 0;

    bool isDirectory() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

// The entry at a position. ERROR_FILE_INVALID when it is not a file or directory (any more).
DirectoryEntry readEntry(VolumeParts& parts, const EntryPlace& place);
// Changes these fields in the cache; the rest of the entry stays.
void changeEntry(VolumeParts& parts, const EntryPlace& place, const DirectoryEntry& entry);

struct FoundEntry {
    EntryPlace place;
    DirectoryEntry entry;
    std::string text;  // the name as text
};

// A directory: the root, or a chain of clusters. Entries of long names are skipped and removed with the entry
// that they belong to. Failures are thrown as DiskError; changes are written by the cache's commit.
class Directory {
public:
    // firstCluster = 0: the root.
    Directory(VolumeParts& parts, DWORD firstCluster);

    DWORD firstCluster() const { return firstCluster_; }
    // Files and directories in disk order, including "." and ".." except in the root.
    std::vector<FoundEntry> entries() const;
    // Ignores case; never finds "." or "..".
    std::optional<FoundEntry> find(std::string_view name) const;
    std::optional<FoundEntry> label() const;

    // Uses the first free slot, or else grows the directory. ERROR_CANNOT_MAKE when the root is full,
    // ERROR_DISK_FULL when no cluster is free.
    EntryPlace add(const DirectoryEntry& entry);
    void remove(const EntryPlace& place);

private:
    enum class SlotKind { End, Deleted, LongName, Label, Dot, Named };

    std::size_t slots() const { return sectors_.size() * 16; }
    EntryPlace place(std::size_t slot) const;
    std::span<const std::byte> raw(std::size_t slot) const;
    SlotKind kind(std::size_t slot) const;
    std::size_t freeSlot();
    void grow();
    void endBehind(std::size_t slot);

    VolumeParts* parts_;
    DWORD firstCluster_;
    std::vector<DWORD> chain_;
    std::vector<DWORD> sectors_;
};

}  // namespace winlayer
