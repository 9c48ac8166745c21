#include "winlayer/diskette/directory.h"

#include <algorithm>

#include "winlayer/diskette/disk_error.h"
#include "winlayer/diskette/little_endian.h"

namespace winlayer {
namespace {

constexpr std::size_t entrySize = 32;
constexpr std::size_t entriesPerSector = sectorSize / entrySize;
constexpr std::size_t mostEntries = 65536;  // of a directory other than the root

// Offsets in an entry.
constexpr std::size_t atAttributes = 11;
constexpr std::size_t atTime = 22;
constexpr std::size_t atDate = 24;
constexpr std::size_t atCluster = 26;
constexpr std::size_t atSize = 28;

constexpr BYTE endMark = 0x00;      // in the first byte: this and all later entries are free
constexpr BYTE deletedMark = 0xE5;  // in the first byte
constexpr BYTE longNameAttributes = 0x0F;
constexpr BYTE longNameMask = 0x3F;
constexpr BYTE lastLongPart = 0x40;  // in the first byte of a long name's first entry on the disk

bool isLongName(std::span<const std::byte> raw) {
    return (get8(raw, atAttributes) & longNameMask) == longNameAttributes;
}

bool isDots(std::span<const std::byte> raw, std::string_view dots) {
    return std::equal(dots.begin(), dots.end(), raw.begin(),
                      [](char c, std::byte b) { return static_cast<std::byte>(c) == b; }) &&
           (get8(raw, atAttributes) & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

DirectoryEntry decode(std::span<const std::byte> raw) {
    DirectoryEntry entry;
    std::copy_n(raw.begin(), entry.name.size(), entry.name.begin());
    entry.attributes = get8(raw, atAttributes);
    entry.written = {get16(raw, atDate), get16(raw, atTime)};
    entry.firstCluster = get16(raw, atCluster);
    entry.size = get32(raw, atSize);
    return entry;
}

void encode(std::span<std::byte> raw, const DirectoryEntry& entry) {
    std::copy(entry.name.begin(), entry.name.end(), raw.begin());
    put8(raw, atAttributes, entry.attributes);
    put16(raw, atTime, entry.written.time);
    put16(raw, atDate, entry.written.date);
    put16(raw, atCluster, entry.firstCluster);
    put32(raw, atSize, entry.size);
}

Fat12Layout mountedLayout(SectorCache& cache, DWORD sectors) {
    Fat12Layout layout;
    require(readLayout(cache.read(0), sectors, layout));
    return layout;
}

}  // namespace

VolumeParts::VolumeParts(SectorStore& store)
    : cache(store), layout(mountedLayout(cache, store.sectors())), fat(cache, layout) {
    cache.setFats(layout.reservedSectors, layout.sectorsPerFat, layout.fats);
}

DirectoryEntry readEntry(VolumeParts& parts, const EntryPlace& place) {
    const auto raw = std::span(parts.cache.read(place.sector)).subspan(place.offset, entrySize);
    const BYTE first = get8(raw, 0);
    if (first == endMark || first == deletedMark ||
        (get8(raw, atAttributes) & DirectoryEntry::labelAttribute) != 0) {
        throw DiskError{ERROR_FILE_INVALID};
    }
    return decode(raw);
}

void changeEntry(VolumeParts& parts, const EntryPlace& place, const DirectoryEntry& entry) {
    encode(std::span(parts.cache.change(place.sector)).subspan(place.offset, entrySize), entry);
}

Directory::Directory(VolumeParts& parts, DWORD firstCluster) : parts_(&parts), firstCluster_(firstCluster) {
    const Fat12Layout& layout = parts.layout;
    if (firstCluster == 0) {
        for (DWORD i = 0; i < layout.rootSectors(); ++i) {
            sectors_.push_back(layout.firstRootSector() + i);
        }
        return;
    }
    chain_ = parts.fat.chain(firstCluster);
    for (const DWORD cluster : chain_) {
        for (DWORD i = 0; i < layout.sectorsPerCluster; ++i) {
            sectors_.push_back(layout.clusterSector(cluster) + i);
        }
    }
    sectors_.resize(std::min(sectors_.size(), mostEntries / entriesPerSector));
}

EntryPlace Directory::place(std::size_t slot) const {
    return {sectors_[slot / entriesPerSector], static_cast<DWORD>(slot % entriesPerSector * entrySize)};
}

std::span<const std::byte> Directory::raw(std::size_t slot) const {
    const EntryPlace at = place(slot);
    return std::span(parts_->cache.read(at.sector)).subspan(at.offset, entrySize);
}

Directory::SlotKind Directory::kind(std::size_t slot) const {
    const auto bytes = raw(slot);
    if (get8(bytes, 0) == endMark) {
        return SlotKind::End;
    }
    if (get8(bytes, 0) == deletedMark) {
        return SlotKind::Deleted;
    }
    if (isLongName(bytes)) {
        return SlotKind::LongName;
    }
    if ((get8(bytes, atAttributes) & DirectoryEntry::labelAttribute) != 0) {
        return SlotKind::Label;
    }
    const bool dot = firstCluster_ != 0 && ((slot == 0 && isDots(bytes, ".          ")) ||
                                            (slot == 1 && isDots(bytes, "..         ")));
    return dot ? SlotKind::Dot : SlotKind::Named;
}

std::vector<FoundEntry> Directory::entries() const {
    std::vector<FoundEntry> found;
    for (std::size_t slot = 0; slot < slots(); ++slot) {
        const SlotKind slotKind = kind(slot);
        if (slotKind == SlotKind::End) {
            break;
        }
        if (slotKind == SlotKind::Named || slotKind == SlotKind::Dot) {
            const DirectoryEntry entry = decode(raw(slot));
            const bool dot = slotKind == SlotKind::Dot;
            found.push_back({place(slot), entry, dot ? std::string(slot + 1, '.') : nameText(entry.name)});
        }
    }
    return found;
}

std::optional<FoundEntry> Directory::find(std::string_view name) const {
    const std::string folded = foldName(name);
    for (FoundEntry& entry : entries()) {
        if (foldName(entry.text) == folded) {
            return std::make_optional(std::move(entry));
        }
    }
    return std::nullopt;
}

std::optional<FoundEntry> Directory::label() const {
    for (std::size_t slot = 0; slot < slots() && kind(slot) != SlotKind::End; ++slot) {
        if (kind(slot) == SlotKind::Label) {
            const DirectoryEntry entry = decode(raw(slot));
            return FoundEntry{place(slot), entry, labelText(entry.name)};
        }
    }
    return std::nullopt;
}

std::size_t Directory::freeSlot() {
    for (std::size_t slot = 0; slot < slots(); ++slot) {
        const SlotKind slotKind = kind(slot);
        if (slotKind == SlotKind::End) {
            endBehind(slot);
        }
        if (slotKind == SlotKind::End || slotKind == SlotKind::Deleted) {
            return slot;
        }
    }
    const std::size_t slot = slots();
    grow();
    return slot;
}

// Entries after the end mark may hold anything.
void Directory::endBehind(std::size_t slot) {
    if (slot + 1 < slots() && kind(slot + 1) != SlotKind::End) {
        const EntryPlace next = place(slot + 1);
        put8(parts_->cache.change(next.sector), next.offset, endMark);
    }
}

void Directory::grow() {
    if (firstCluster_ == 0 || slots() >= mostEntries) {
        throw DiskError{ERROR_CANNOT_MAKE};
    }
    const std::size_t before = chain_.size();
    parts_->fat.extend(chain_, 1);
    if (chain_.size() == before) {
        throw DiskError{ERROR_DISK_FULL};
    }
    for (DWORD i = 0; i < parts_->layout.sectorsPerCluster; ++i) {
        const DWORD sector = parts_->layout.clusterSector(chain_.back()) + i;
        parts_->cache.replace(sector);
        sectors_.push_back(sector);
    }
}

EntryPlace Directory::add(const DirectoryEntry& entry) {
    const EntryPlace at = place(freeSlot());
    const auto bytes = std::span(parts_->cache.change(at.sector)).subspan(at.offset, entrySize);
    std::fill(bytes.begin(), bytes.end(), std::byte{0});
    encode(bytes, entry);
    return at;
}

void Directory::remove(const EntryPlace& removed) {
    std::size_t slot = 0;
    while (slot < slots() && !(place(slot) == removed)) {
        ++slot;
    }
    bool foremost = slot == slots();
    while (!foremost) {
        foremost = slot == 0 || kind(slot - 1) != SlotKind::LongName ||
                   (kind(slot) == SlotKind::LongName && (get8(raw(slot), 0) & lastLongPart) != 0);
        const EntryPlace at = place(slot--);
        put8(parts_->cache.change(at.sector), at.offset, deletedMark);
    }
}

}  // namespace winlayer
