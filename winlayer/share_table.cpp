#include "winlayer/share_table.h"

namespace winlayer {

ShareTable::Entry::~Entry() {
    table_->close(file_, access_, sharing_);
}

bool ShareTable::open(FileIdentity file, DWORD access, DWORD sharing, std::unique_ptr<Entry>& entry) {
    if ((access & (GENERIC_READ | GENERIC_WRITE | deleteAccess)) == 0) {
        return true;
    }
    const std::lock_guard lock(mutex_);
    Opens& opens = opens_[file];
    if (!opens.admits(access, sharing)) {
        return false;
    }
    entry = std::make_unique<Entry>(shared_from_this(), file, access, sharing);
    opens.change(access, sharing, true);
    return true;
}

bool ShareTable::mayDelete(FileIdentity file) const {
    const std::lock_guard lock(mutex_);
    const auto found = opens_.find(file);
    return found == opens_.end() || found->second.sharesDeletion == found->second.count;
}

void ShareTable::close(FileIdentity file, DWORD access, DWORD sharing) {
    const std::lock_guard lock(mutex_);
    const auto found = opens_.find(file);
    found->second.change(access, sharing, false);
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
