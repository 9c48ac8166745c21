#pragma once
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "winlayer/diskette/sector_store.h"

namespace winlayer {

using Sector = std::array<std::byte, sectorSize>;

// The sectors of FATs and directories, kept in memory, with changes that reach the medium together: an
// operation changes sectors and then commits, or fails and discards. Failures are thrown as DiskError.
// References to sectors hold until the next discard or forget.
class SectorCache {
public:
    explicit SectorCache(SectorStore& store);

    // The first FAT's place and the number of FATs: its sectors are written to each of them.
    void setFats(DWORD first, DWORD count, DWORD copies);

    const Sector& read(DWORD sector);
    // To be changed by the caller before the next commit.
    Sector& change(DWORD sector);
    // The same for a sector whose content no longer matters: all zero, and not read.
    Sector& replace(DWORD sector);

    // Writes the changes in the order in which they were begun. When a write fails, those before it are
    // undone as far as the medium lets them, all changes are forgotten, and the failure is thrown.
    void commit();
    void discard();

    // File contents: whole sectors past the cache, which forgets what it held of them.
    void readContent(DWORD first, std::span<std::byte> buffer);
    void writeContent(DWORD first, std::span<const std::byte> data);

    // For sectors that were written behind the cache's back.
    void forget(DWORD first, std::size_t count);
    void forgetAll();

private:
    struct Slot {
        Sector data{};
        std::optional<Sector> original;  // as it is on the medium, while a change is under way
    };

    Slot& load(DWORD sector);
    DWORD copiesOf(DWORD sector) const;
    DWORD writeCopies(DWORD sector, const Sector& data);
    void undo(std::size_t written);

    SectorStore& store_;
    std::vector<std::unique_ptr<Slot>> slots_;
    std::vector<DWORD> changed_;
    DWORD fatFirst_ = 0;
    DWORD fatCount_ = 0;
    DWORD fatCopies_ = 1;
};

}  // namespace winlayer
