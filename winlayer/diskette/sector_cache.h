#pragma once
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "winlayer/diskette/sector_store.h"

namespace winlayer {

using Sector = std::array<std::byte, sectorSize>;

// Caches the sectors of FATs and directories. Changes are written together: an operation changes sectors and
// then commits, or fails and discards. Failures are thrown as DiskError. References to a sector are valid
// until the cache drops it.
class SectorCache {
public:
    explicit SectorCache(SectorStore& store);

    // The position and size of the first FAT, and the number of FATs, which all get its changes.
    void setFats(DWORD first, DWORD count, DWORD copies);

    const Sector& read(DWORD sector);
    // The caller may change it until the next commit.
    Sector& change(DWORD sector);
    // The same for a sector whose old content does not matter: zero-filled, not read.
    Sector& replace(DWORD sector);

    // Writes the changes in the order in which they were begun. If a write fails, it and the earlier ones are
    // undone as far as the medium allows, all changes are dropped, and the failure is thrown.
    void commit();
    void discard();

    // File contents: complete sectors that bypass the cache; writing drops its unchanged copies.
    void readContent(DWORD first, std::span<std::byte> buffer);
    void writeContent(DWORD first, std::span<const std::byte> data);

    // Call after sectors were written without the cache.
    void forget(DWORD first, std::size_t count);
    void forgetAll();

private:
    struct Slot {
        Sector data{};
        std::optional<Sector> original;  // its content on the medium, while a change is pending
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
