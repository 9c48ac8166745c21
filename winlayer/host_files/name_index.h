#pragma once
#include <sys/stat.h>

#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace winlayer {

// Finds names without case on a case-sensitive host. That requires reading all names of a folder, so they are
// remembered, up to a total number, until the folder's modification time changes. Paths are host paths.
// Thread rule: any thread may call every operation.
class NameIndex {
public:
    // Total of remembered names. Beyond it the least recently used folders are forgotten.
    static constexpr std::size_t usualLimit = 1'000'000;
    explicit NameIndex(std::size_t limit = usualLimit) : limit_(limit) {}

    // The name in the folder that differs from this one at most in case; "" when there is none. False when
    // the folder does not exist or cannot be read.
    bool find(const std::string& folder, std::string_view name, std::string& found);
    // Whether find() is known to find nothing, without reading the folder.
    bool knowsAbsent(const std::string& folder, std::string_view name);
    // Adds a name that find() did not find and that was created since. A change by another program at the
    // same instant goes unnoticed until the next one.
    void made(const std::string& folder, std::string_view name);

    // From now on trusts what is remembered of a folder without checking it on the host.
    void trust() { trusting_ = true; }
    // Forgets everything. False if there was nothing.
    bool forget();

private:
    struct Folder {
        std::string path;
        struct stat facts;
        std::unordered_map<std::string, std::string> names;  // by folded name
    };
    using Folders = std::list<Folder>;

    // The folder if what is remembered of it is still valid, otherwise null.
    Folder* current(const std::string& path, const struct stat& facts);
    Folder* known(const std::string& path);
    bool look(const std::string& path, const struct stat& facts, const std::string& folded,
              std::string& found);

    void remember(Folder seen);
    void drop(Folders::iterator folder);
    void dropTheOldest();

    const std::size_t limit_;
    bool trusting_ = false;
    std::mutex mutex_;
    Folders folders_;                                                 // most recently used first
    std::unordered_map<std::string_view, Folders::iterator> byPath_;  // keys refer to the folders' paths
    std::size_t names_ = 0;                                           // of all folders
};

}  // namespace winlayer
