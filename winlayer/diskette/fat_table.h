#pragma once
#include <vector>

#include "winlayer/diskette/fat12_layout.h"
#include "winlayer/diskette/sector_cache.h"

namespace winlayer {

// The file allocation table: the successor of each cluster. Every number read from it is checked. Changes are
// written by the cache's commit; failures are thrown as DiskError.
class FatTable {
public:
    FatTable(SectorCache& cache, const Fat12Layout& layout);

    // The clusters of a chain in order; none for first = 0. ERROR_FILE_CORRUPT if it leaves the volume,
    // reaches free or unusable clusters, or never ends.
    std::vector<DWORD> chain(DWORD first);

    // Extends a chain by up to `count` clusters, the lowest free ones first; by fewer if the volume is full.
    void extend(std::vector<DWORD>& chain, DWORD count);
    // Truncates a chain to its first `keep` clusters.
    void cut(std::vector<DWORD>& chain, DWORD keep);
    // Frees the valid part of a chain.
    void release(DWORD first);

    // Call after clusters may have been freed in other ways.
    void forget() { lowestFree_ = 2; }

private:
    DWORD get(DWORD cluster);
    void set(DWORD cluster, DWORD value);

    SectorCache& cache_;
    const Fat12Layout& layout_;
    DWORD lowestFree_ = 2;  // no cluster below is free
};

}  // namespace winlayer
