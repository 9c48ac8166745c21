#include "winlayer/host_files/share_table.h"

#include <sys/stat.h>

#include "winlayer/include/winerror.h"

namespace winlayer {

namespace {

bool takesPart(DWORD access) {
    return (access & (GENERIC_READ | GENERIC_WRITE | deleteAccess)) != 0;
}

}  // namespace

ShareTable::Entry::~Entry() {
    table_->close(*this);
}

bool ShareTable::Entry::attach(FileCache& cache) {
    const std::lock_guard lock(table_->mutex_);
    if (descriptor_ < 0) {
        Opens& opens = table_->opens_[file_];
        if (opens.count + opens.onlookers != 1) {
            return false;
        }
        opens.cached = this;
    }
    cache_ = &cache;
    ++table_->caches_;
    return true;
}

void ShareTable::Entry::detach() {
    const std::lock_guard lock(table_->mutex_);
    if (cache_ == nullptr) {
        return;
    }
    cache_ = nullptr;
    --table_->caches_;
    if (descriptor_ < 0) {
        table_->opens_[file_].cached = nullptr;
    }
}

void ShareTable::Entry::tellPath(std::string path, int descriptor) {
    const std::lock_guard lock(table_->mutex_);
    table_->last_ = this;
    table_->lastPath_ = std::move(path);
    table_->lastDescriptor_ = descriptor;
}

DWORD ShareTable::open(FileIdentity file, DWORD access, DWORD sharing, std::unique_ptr<Entry>& entry) {
    const std::lock_guard lock(mutex_);
    identifyNew();
    const auto found = opens_.find(file);
    if (found != opens_.end()) {
        if (takesPart(access) && !found->second.admits(access, sharing)) {
            return ERROR_SHARING_VIOLATION;
        }
        if (const DWORD error = endCache(found->second); error != 0) {
            return error;
        }
    }
    Opens& opens = opens_[file];  // inserted first, because ~Entry looks it up
    entry = std::make_unique<Entry>(shared_from_this(), access, sharing);
    entry->file_ = file;
    opens.change(access, sharing, true);
    return 0;
}

std::unique_ptr<ShareTable::Entry> ShareTable::add(int descriptor, DWORD access, DWORD sharing) {
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

bool ShareTable::passOn(FileIdentity file) {
    const std::lock_guard lock(mutex_);
    if (caches_ == 0) {
        return false;
    }
    identifyNew();
    const auto found = opens_.find(file);
    const bool cached = found != opens_.end() && found->second.cached != nullptr;
    // The file's next transfer reports the failure.
    return cached && found->second.cached->cache_->passOn() == 0;
}

DWORD ShareTable::endCache(Opens& opens) {
    if (opens.cached == nullptr) {
        return 0;
    }
    const DWORD error = opens.cached->cache_->end();
    if (error == 0) {
        opens.cached->cache_ = nullptr;
        opens.cached = nullptr;
        --caches_;
    }
    return error;
}

void ShareTable::endCaches() {
    const std::lock_guard lock(mutex_);
    identifyNew();
    for (auto& [file, opens] : opens_) {
        endCache(opens);
    }
}

void ShareTable::forgetLast() {
    const std::lock_guard lock(mutex_);
    last_ = nullptr;
}

void ShareTable::identifyNew() {
    for (; !new_.empty(); new_.pop_back()) {
        Entry* const entry = new_.back();
        struct stat facts {};
        ::fstat(entry->descriptor_, &facts);
        const FileIdentity file{facts.st_dev, facts.st_ino};
        Opens& opens = opens_[file];
        entry->file_ = file;
        entry->descriptor_ = -1;
        opens.change(entry->access_, entry->sharing_, true);
        opens.cached = entry->cache_ != nullptr ? entry : nullptr;
    }
}

void ShareTable::close(const Entry& entry) {
    const std::lock_guard lock(mutex_);
    if (last_ == &entry) {
        last_ = nullptr;
    }
    if (entry.descriptor_ >= 0) {
        std::erase(new_, &entry);
        return;
    }
    const auto found = opens_.find(entry.file_);
    found->second.change(entry.access_, entry.sharing_, false);
    if (found->second.count + found->second.onlookers == 0) {
        opens_.erase(found);
    }
}

void ShareTable::Opens::change(DWORD access, DWORD sharing, bool opened) {
    const auto step = [&](unsigned& counter, bool concerned) {
        if (concerned) {
            counter += opened ? 1u : ~0u;
        }
    };
    if (!takesPart(access)) {
        step(onlookers, true);
        return;
    }
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
