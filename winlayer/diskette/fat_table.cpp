#include "winlayer/diskette/fat_table.h"

#include <algorithm>

#include "winlayer/diskette/disk_error.h"

namespace winlayer {
namespace {

constexpr DWORD freeCluster = 0;
constexpr DWORD firstEndMark = 0xFF8;  // from here up: the last cluster of a chain
constexpr DWORD endMark = 0xFFF;

}  // namespace

FatTable::FatTable(SectorCache& cache, const Fat12Layout& layout) : cache_(cache), layout_(layout) {}

// Two entries share three bytes, which may lie in two sectors.
DWORD FatTable::get(DWORD cluster) {
    const DWORD at = cluster + cluster / 2;
    const DWORD place = layout_.reservedSectors + at / sectorSize;
    const DWORD inside = at % sectorSize;
    const Sector& sector = cache_.read(place);
    const std::byte second = inside + 1 < sectorSize ? sector[inside + 1] : cache_.read(place + 1)[0];
    const DWORD pair = std::to_integer<DWORD>(sector[inside]) | std::to_integer<DWORD>(second) << 8;
    return cluster % 2 == 0 ? pair & 0xFFF : pair >> 4;
}

void FatTable::set(DWORD cluster, DWORD value) {
    const DWORD at = cluster + cluster / 2;
    const auto change = [&](DWORD index, DWORD mask, DWORD bits) {
        std::byte& place = cache_.change(layout_.reservedSectors + index / sectorSize)[index % sectorSize];
        place = static_cast<std::byte>((std::to_integer<DWORD>(place) & ~mask) | bits);
    };
    if (cluster % 2 == 0) {
        change(at, 0xFF, value & 0xFF);
        change(at + 1, 0x0F, value >> 8);
    } else {
        change(at, 0xF0, (value & 0x0F) << 4);
        change(at + 1, 0xFF, value >> 4);
    }
    if (value == freeCluster) {
        lowestFree_ = std::min(lowestFree_, cluster);
    }
}

std::vector<DWORD> FatTable::chain(DWORD first) {
    std::vector<DWORD> clusters;
    const DWORD limit = layout_.clusters();
    if (first == 0) {
        return clusters;
    }
    DWORD cluster = first;
    do {
        if (!layout_.isCluster(cluster) || clusters.size() == limit) {
            throw DiskError{ERROR_FILE_CORRUPT};
        }
        clusters.push_back(cluster);
        cluster = get(cluster);
    } while (cluster < firstEndMark);
    return clusters;
}

void FatTable::extend(std::vector<DWORD>& chain, DWORD count) {
    const DWORD end = layout_.clusters() + 2;
    for (DWORD cluster = lowestFree_; cluster < end && count > 0; ++cluster) {
        if (get(cluster) != freeCluster) {
            lowestFree_ = cluster + 1;
            continue;
        }
        if (!chain.empty()) {
            set(chain.back(), cluster);
        }
        set(cluster, endMark);
        chain.push_back(cluster);
        lowestFree_ = cluster + 1;
        --count;
    }
}

void FatTable::cut(std::vector<DWORD>& chain, DWORD keep) {
    if (keep >= chain.size()) {
        return;
    }
    if (keep > 0) {
        set(chain[keep - 1], endMark);
    }
    std::for_each(chain.begin() + keep, chain.end(), [&](DWORD cluster) { set(cluster, freeCluster); });
    chain.resize(keep);
}

void FatTable::release(DWORD first) {
    DWORD cluster = first;
    while (layout_.isCluster(cluster)) {
        const DWORD next = get(cluster);
        if (next == freeCluster) {
            return;
        }
        set(cluster, freeCluster);
        cluster = next;
    }
}

}  // namespace winlayer
