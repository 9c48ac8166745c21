#include "winlayer/host_files/name_index.h"

#include <dirent.h>

#include <iterator>
#include <memory>

#include "winlayer/text/case_folding.h"

namespace winlayer {

namespace {

bool unchanged(const struct stat& a, const struct stat& b) {
    return a.st_ino == b.st_ino && a.st_dev == b.st_dev && a.st_ctim.tv_sec == b.st_ctim.tv_sec &&
           a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

bool getFacts(const std::string& folder, struct stat& facts) {
    return ::stat(folder.empty() ? "/" : folder.c_str(), &facts) == 0;
}

}  // namespace

bool NameIndex::find(const std::string& folder, std::string_view name, std::string& found) {
    const std::string folded = foldCase(name);
    const std::lock_guard lock(mutex_);
    const Folder* seen = trusting_ ? known(folder) : nullptr;
    struct stat facts;
    if (seen == nullptr) {
        if (!getFacts(folder, facts)) {
            return false;
        }
        seen = current(folder, facts);
    }
    if (seen == nullptr) {
        return look(folder, facts, folded, found);
    }
    const auto match = seen->names.find(folded);
    found = match != seen->names.end() ? match->second : std::string();
    return true;
}

bool NameIndex::knowsAbsent(const std::string& folder, std::string_view name) {
    struct stat facts;
    const std::lock_guard lock(mutex_);
    const Folder* seen = known(folder);
    if (seen != nullptr && !trusting_) {
        seen = getFacts(folder, facts) ? current(folder, facts) : nullptr;
    }
    return seen != nullptr && seen->names.count(foldCase(name)) == 0;
}

void NameIndex::made(const std::string& folder, std::string_view name) {
    const std::lock_guard lock(mutex_);
    if (Folder* const seen = known(folder)) {
        names_ += seen->names.emplace(foldCase(name), name).second ? 1 : 0;
        if (!trusting_) {
            getFacts(folder, seen->facts);
        }
        dropTheOldest();
    }
}

bool NameIndex::forget() {
    const std::lock_guard lock(mutex_);
    const bool any = !folders_.empty();
    byPath_.clear();
    folders_.clear();
    names_ = 0;
    return any;
}

NameIndex::Folder* NameIndex::known(const std::string& path) {
    const auto found = byPath_.find(path);
    if (found == byPath_.end()) {
        return nullptr;
    }
    folders_.splice(folders_.begin(), folders_, found->second);
    return &folders_.front();
}

NameIndex::Folder* NameIndex::current(const std::string& path, const struct stat& facts) {
    Folder* const seen = known(path);
    if (seen != nullptr && !unchanged(seen->facts, facts)) {
        drop(folders_.begin());
        return nullptr;
    }
    return seen;
}

// The facts were read before the scan, so a change during it makes the result count as outdated.
bool NameIndex::look(const std::string& path, const struct stat& facts, const std::string& folded,
                     std::string& found) {
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(path.empty() ? "/" : path.c_str()),
                                                        ::closedir);
    if (directory == nullptr) {
        return false;
    }
    Folder seen{path, facts, {}};
    found.clear();
    while (const dirent* entry = ::readdir(directory.get())) {
        const std::string key = foldCase(entry->d_name);
        if (key == folded) {
            found = entry->d_name;
        }
        if (seen.names.size() <= limit_) {
            seen.names.emplace(key, entry->d_name);
        }
    }
    if (seen.names.size() <= limit_) {
        remember(std::move(seen));
    }
    return true;
}

void NameIndex::remember(Folder seen) {
    Folders added;
    added.push_front(std::move(seen));
    byPath_.emplace(added.front().path, added.begin());
    names_ += added.front().names.size();
    folders_.splice(folders_.begin(), added);
    dropTheOldest();
}

void NameIndex::drop(Folders::iterator folder) {
    names_ -= folder->names.size();
    byPath_.erase(folder->path);
    folders_.erase(folder);
}

// Keeps the folder in use, however many names it has.
void NameIndex::dropTheOldest() {
    while (names_ > limit_ && folders_.size() > 1) {
        drop(std::prev(folders_.end()));
    }
}

}  // namespace winlayer
