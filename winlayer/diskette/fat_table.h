#pragma once
#include <vector>

#include "winlayer/diskette/fat12_layout.h"
#include "winlayer/diskette/sector_cache.h"

namespace winlayer {

// The file allocation table: which cluster follows which. Every number found in it is checked. Changes wait
// for the cache's commit; failures are thrown as DiskError.
class FatTable {
public:
    FatTable(SectorCache& cache, const Fat12Layout& layout);

    // The clusters of a chain in order; none for first = 0. ERROR_FILE_CORRUPT when it leaves the volume,
    // runs into free or unusable clusters, or never ends.
    std::vector<DWORD> chain(DWORD first);

    // Lengthens a chain by up to `count` clusters, the lowest free ones first; fewer when there are no more.
    void extend(std::vector<DWORD>& chain, DWORD count);
    // Shortens a chain to its first `keep` clusters.
    void cut(std::vector<DWORD>& chain, DWORD keep);
    // Frees a chain as far as it is one.
    void release(DWORD first);

    // After clusters may have become free by other ways than these.
    void forget() { lowestFree_ = 2; }

private:
    DWORD get(DWORD cluster);
    void set(DWORD cluster, DWORD value);

    SectorCache& cache_;
    const Fat12Layout& layout_;
    DWORD lowestFree_ = 2;  // no cluster below is free
};

}  // namespace winlayer
