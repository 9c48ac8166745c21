#include "winlayer/share_table.h"

#include <sys/stat.h>

namespace winlayer {

namespace {

bool takesPart(DWORD access) {
    return (access & (GENERIC_READ | GENERIC_WRITE | deleteAccess)) != 0;
}

}  // namespace

ShareTable::Entry::~Entry() {
    table_->close(*this);
}

bool ShareTable::open(FileIdentity file, DWORD access, DWORD sharing, std::unique_ptr<Entry>& entry) {
    if (!takesPart(access)) {
        return true;
    }
    const std::lock_guard lock(mutex_);
    identifyNew();
    Opens& opens = opens_[file];
    if (!opens.admits(access, sharing)) {
        return false;
    }
    entry = std::make_unique<Entry>(shared_from_this(), access, sharing);
    entry->file_ = file;
    opens.change(access, sharing, true);
    return true;
}

std::unique_ptr<ShareTable::Entry> ShareTable::add(int descriptor, DWORD access, DWORD sharing) {
    if (!takesPart(access)) {
        return nullptr;
    }
    auto entry = std::make_unique<Entry>(shared_from_this(), access, sharing);
    entry->descriptor_ = descriptor;
    const std::lock_guard lock(mutex_);
    new_.push_back(entry.get());
    return entry;
}

bool ShareTable::mayDelete(FileIdentity file) {
    const std::lock_guard lock(mutex_);
    identifyNew();
    const auto found = opens_.find(file);
    return found == opens_.end() || found->second.sharesDeletion == found->second.count;
}

void ShareTable::identifyNew() {
    for (Entry* const entry : new_) {
        struct stat facts {};
        ::fstat(entry->descriptor_, &facts);
        entry->file_ = {facts.st_dev, facts.st_ino};
        entry->descriptor_ = -1;
        opens_[entry->file_].change(entry->access_, entry->sharing_, true);
    }
    new_.clear();
}

void ShareTable::close(const Entry& entry) {
    const std::lock_guard lock(mutex_);
    if (entry.descriptor_ >= 0) {
        std::erase(new_, &entry);
        return;
    }
    const auto found = opens_.find(entry.file_);
    found->second.change(entry.access_, entry.sharing_, false);
    if (found->second.count == 0) {
        opens_.erase(found);
    }
}

void ShareTable::Opens::change(DWORD access, DWORD sharing, bool opened) {
    const auto step = [&](unsigned& counter, bool concerned) {
        if (concerned) {
            counter += opened ? 1u : ~0u;
        }
    };
    step(count, true);
    step(reading, (access & GENERIC_READ) != 0);
    step(writing, (access & GENERIC_WRITE) != 0);
    step(deleting, (access & deleteAccess) != 0);
    step(sharesReading, (sharing & FILE_SHARE_READ) != 0);
    step(sharesWriting, (sharing & FILE_SHARE_WRITE) != 0);
    step(sharesDeletion, (sharing & FILE_SHARE_DELETE) != 0);
}

bool ShareTable::Opens::admits(DWORD access, DWORD sharing) const {
    return ((access & GENERIC_READ) == 0 || sharesReading == count) &&
           ((access & GENERIC_WRITE) == 0 || sharesWriting == count) &&
           ((access & deleteAccess) == 0 || sharesDeletion == count) &&
           ((sharing & FILE_SHARE_READ) != 0 || reading == 0) &&
           ((sharing & FILE_SHARE_WRITE) != 0 || writing == 0) &&
           ((sharing & FILE_SHARE_DELETE) != 0 || deleting == 0);
}

}  // namespace winlayer
