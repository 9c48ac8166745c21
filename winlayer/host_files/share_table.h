#pragma once
#include <sys/types.h>

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "winlayer/include/fileapi.h"

namespace winlayer {

// To delete a file, or to have it deleted when it is closed, is an access of its own.
inline constexpr DWORD deleteAccess = 0x00010000;

// A host file whatever its names.
struct FileIdentity {
    dev_t device = 0;
    ino_t node = 0;
    bool operator==(const FileIdentity&) const = default;
};

// What is kept of an open file's contents. It stays unseen as long as no other open of the file exists.
class FileCache {
public:
    virtual ~FileCache() = default;
    // Passes what was written on to the host; what could not be written is kept.
    virtual DWORD passOn() = 0;
    // The same, and from then on nothing is kept. Nothing has changed when it fails.
    virtual DWORD end() = 0;
};

// Who has which host file open in this settings, and what each of them lets others do. An open that asks for
// none of reading, writing and deletion only looks on: it refuses nobody and is refused by nobody.
class ShareTable : public std::enable_shared_from_this<ShareTable> {
public:
    // One open file's entry; ends it when destroyed.
    class Entry {
    public:
        Entry(std::shared_ptr<ShareTable> table, DWORD access, DWORD sharing)
            : table_(std::move(table)), access_(access), sharing_(sharing) {}
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        ~Entry();

        // Tells of a cache, which goes on until the file is opened once more. False: it is open already, so
        // there must be none. The cache outlives this or is detached before.
        bool attach(FileCache& cache);
        void detach();
        // Tells under which path and descriptor, which outlives this, the file is open.
        void tellPath(std::string path, int descriptor);

    private:
        friend class ShareTable;

        std::shared_ptr<ShareTable> table_;
        DWORD access_;
        DWORD sharing_;
        FileIdentity file_;
        int descriptor_ = -1;  // the file, while nobody has asked which one it is
        FileCache* cache_ = nullptr;
    };

    // ERROR_SHARING_VIOLATION: an earlier open does not share what this one asks for, or the other way round.
    // Another code: what the earlier one wrote does not reach the host.
    DWORD open(FileIdentity file, DWORD access, DWORD sharing, std::unique_ptr<Entry>& entry);
    // For a file that was made just now, which nobody else can have open. Which file it is need not be asked
    // unless another is opened while it is open. The descriptor must outlive the entry.
    std::unique_ptr<Entry> add(int descriptor, DWORD access, DWORD sharing);
    // Whether every open of the file shares its deletion.
    bool mayDelete(FileIdentity file);

    // Lets the host know all that was written to the file. False: it knew already.
    bool passOn(FileIdentity file);
    // Ends all caches; what cannot be written is lost.
    void endCaches();

    // Does something with the descriptor of the file that was opened last if that is still open and this is
    // its path.
    template <class Look>
    bool lookAtLast(const std::string& path, const Look& look) {
        const std::lock_guard lock(mutex_);
        const bool open = last_ != nullptr && path == lastPath_;
        if (open) {
            look(lastDescriptor_);
        }
        return open;
    }
    // A path may lead elsewhere from now on.
    void forgetLast();

private:
    struct Opens {
        Entry* cached = nullptr;  // the one open, if it has a cache
        unsigned onlookers = 0;
        unsigned count = 0;
        unsigned reading = 0;
        unsigned writing = 0;
        unsigned deleting = 0;
        unsigned sharesReading = 0;
        unsigned sharesWriting = 0;
        unsigned sharesDeletion = 0;

        void change(DWORD access, DWORD sharing, bool opened);
        bool admits(DWORD access, DWORD sharing) const;
    };
    struct Hash {
        std::size_t operator()(const FileIdentity& file) const {
            return static_cast<std::size_t>(file.node * 31 + file.device);
        }
    };

    void identifyNew();
    DWORD endCache(Opens& opens);
    void close(const Entry& entry);

    std::mutex mutex_;
    std::unordered_map<FileIdentity, Opens, Hash> opens_;
    std::vector<Entry*> new_;
    unsigned caches_ = 0;
    const Entry* last_ = nullptr;
    std::string lastPath_;
    int lastDescriptor_ = -1;
};

}  // namespace winlayer
