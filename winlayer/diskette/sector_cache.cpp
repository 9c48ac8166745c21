#include "winlayer/diskette/sector_cache.h"

#include "winlayer/diskette/disk_error.h"

namespace winlayer {

SectorCache::SectorCache(SectorStore& store) : store_(store), slots_(store.sectors()) {}

void SectorCache::setFats(DWORD first, DWORD count, DWORD copies) {
    fatFirst_ = first;
    fatCount_ = count;
    fatCopies_ = copies;
}

SectorCache::Slot& SectorCache::load(DWORD sector) {
    if (sector >= slots_.size()) {
        throw DiskError{ERROR_SECTOR_NOT_FOUND};
    }
    auto& slot = slots_[sector];
    if (!slot) {
        auto loaded = std::make_unique<Slot>();
        require(store_.read(sector, loaded->data));
        slot = std::move(loaded);
    }
    return *slot;
}

const Sector& SectorCache::read(DWORD sector) {
    return load(sector).data;
}

Sector& SectorCache::change(DWORD sector) {
    Slot& slot = load(sector);
    if (!slot.original) {
        changed_.push_back(sector);
        slot.original = slot.data;
    }
    return slot.data;
}

Sector& SectorCache::replace(DWORD sector) {
    if (sector >= slots_.size()) {
        throw DiskError{ERROR_SECTOR_NOT_FOUND};
    }
    auto& slot = slots_[sector];
    if (!slot || !slot->original) {
        changed_.push_back(sector);  // first: a slot not listed here must match the medium
        if (!slot) {
            slot = std::make_unique<Slot>();
        }
        slot->original = Sector{};  // the old content is free space, so undoing it with zeros is right
    }
    slot->data.fill(std::byte{0});
    return slot->data;
}

DWORD SectorCache::copiesOf(DWORD sector) const {
    return sector >= fatFirst_ && sector - fatFirst_ < fatCount_ ? fatCopies_ : 1;
}

DWORD SectorCache::writeCopies(DWORD sector, const Sector& data) {
    const DWORD copies = copiesOf(sector);
    for (DWORD copy = 0; copy < copies; ++copy) {
        const DWORD error = store_.write(sector + copy * fatCount_, data);
        if (error != NO_ERROR) {
            return error;
        }
    }
    return NO_ERROR;
}

void SectorCache::undo(std::size_t written) {
    for (std::size_t i = written; i-- > 0;) {
        writeCopies(changed_[i], *slots_[changed_[i]]->original);
    }
    for (const DWORD sector : changed_) {
        slots_[sector].reset();  // the content of the medium is now unknown
    }
    changed_.clear();
}

void SectorCache::commit() {
    for (std::size_t i = 0; i < changed_.size(); ++i) {
        const DWORD error = writeCopies(changed_[i], slots_[changed_[i]]->data);
        if (error != NO_ERROR) {
            undo(i + 1);
            throw DiskError{error};
        }
    }
    for (const DWORD sector : changed_) {
        slots_[sector]->original.reset();
    }
    changed_.clear();
}

void SectorCache::discard() {
    for (const DWORD sector : changed_) {
        slots_[sector].reset();
    }
    changed_.clear();
}

void SectorCache::readContent(DWORD first, std::span<std::byte> buffer) {
    require(store_.read(first, buffer));
}

void SectorCache::writeContent(DWORD first, std::span<const std::byte> data) {
    forget(first, data.size() / sectorSize);
    require(store_.write(first, data));
}

void SectorCache::forget(DWORD first, std::size_t count) {
    for (std::size_t sector = first; sector < slots_.size() && sector - first < count; ++sector) {
        if (slots_[sector] && !slots_[sector]->original) {
            slots_[sector].reset();
        }
    }
}

void SectorCache::forgetAll() {
    discard();
    forget(0, slots_.size());
}

}  // namespace winlayer
