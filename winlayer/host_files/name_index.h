#pragma once
#include <sys/stat.h>

#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace winlayer {

// Finds names without case on a host that tells case apart. That takes a look at every name of a folder, so
// what was seen is remembered, up to a number of names in all, as long as the folders have not changed: a
// folder's time of change says so. Paths are of the host; any thread may ask.
class NameIndex {
public:
    // Names that are remembered in all. Beyond it the folders that were not asked for lately are forgotten.
    static constexpr std::size_t usualLimit = 1'000'000;
    explicit NameIndex(std::size_t limit = usualLimit) : limit_(limit) {}

    // The name in the folder that differs from this one at most in case; "" when there is none. False when
    // there is no such folder or its names are not to be read.
    bool find(const std::string& folder, std::string_view name, std::string& found);
    // Whether it is certain, without a look at every name, that find() would find nothing.
    bool knowsAbsent(const std::string& folder, std::string_view name);
    // Tells that a name which find() did not find was made since. A change by another program in the same
    // instant goes unnoticed until the next one.
    void made(const std::string& folder, std::string_view name);

    // From now on what is remembered of a folder is taken to be all that can have changed, without a look at
    // the host.
    void trust() { trusting_ = true; }
    // Forgets everything. False: there was nothing.
    bool forget();

private:
    struct Folder {
        std::string path;
        struct stat facts;
        std::unordered_map<std::string, std::string> names;  // by their folded form
    };
    using Folders = std::list<Folder>;

    // What is known of the folder as it is now; null when that is nothing.
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
    Folders folders_;                                                 // the one used last in front
    std::unordered_map<std::string_view, Folders::iterator> byPath_;  // the paths are the folders' own
    std::size_t names_ = 0;                                           // of all folders
};

}  // namespace winlayer
