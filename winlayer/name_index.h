#pragma once
#include <sys/stat.h>

#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace winlayer {

// Finds names without case on a host that tells case apart. That takes a look at every name of a folder, so
// what was seen is remembered for the folders looked at last, as long as they have not changed: a folder's
// time of change says so. Paths are of the host; any thread may ask.
class NameIndex {
public:
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

    // What is known of the folder as it is now; null when that is nothing.
    Folder* current(const std::string& path, const struct stat& facts);
    Folder* known(const std::string& path);
    bool look(const std::string& path, const struct stat& facts, const std::string& folded,
              std::string& found);

    void remember(Folder seen);

    bool trusting_ = false;
    std::mutex mutex_;
    std::list<Folder> folders_;  // the one used last in front
};

}  // namespace winlayer
