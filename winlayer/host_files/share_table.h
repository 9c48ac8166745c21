#pragma once
#include <sys/types.h>

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "winlayer/include/fileapi.h"

namespace winlayer {

// Deleting a file, or having it deleted on closing, is an access right of its own.
inline constexpr DWORD deleteAccess = 0x00010000;

// Identifies a host file regardless of its names.
struct FileIdentity {
    dev_t device = 0;
    ino_t node = 0;
    bool operator==(const FileIdentity&) const = default;
};

// The cached contents of an open file. Nobody sees the difference while it is the only open of the file.
class FileCache {
public:
    virtual ~FileCache() = default;
    // Writes buffered data to the host; data that could not be written is kept.
    virtual DWORD passOn() = 0;
    // The same, then stops caching. Nothing has changed when it fails.
    virtual DWORD end() = 0;
};

// The open host files of one machine, with the access and sharing of each open. An open for none of reading,
// writing and deletion takes no part: it conflicts with no other.
class ShareTable : public std::enable_shared_from_this<ShareTable> {
public:
    // The entry of one open; removed from the table by its destructor.
    class Entry {
    public:
        Entry(std::shared_ptr<ShareTable> table, DWORD access, DWORD sharing)
            : table_(std::move(table)), access_(access), sharing_(sharing) {}
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        ~Entry();

        // Registers a cache, which is used until the file is opened again. False if it is open already: then
        // there must be no cache. The cache must outlive this entry or be detached before.
        bool attach(FileCache& cache);
        void detach();
        // Records the path and descriptor of the open file; the descriptor must outlive this entry.
        void tellPath(std::string path, int descriptor);

    private:
        friend class ShareTable;

        std::shared_ptr<ShareTable> table_;
        DWORD access_;
        DWORD sharing_;
        FileIdentity file_;
        int descriptor_ = -1;  // until the file is identified
        FileCache* cache_ = nullptr;
    };

    // ERROR_SHARING_VIOLATION: an earlier open does not share the requested access, or the other way round.
    // Another code: data buffered by the earlier open cannot be written to the host.
    DWORD open(FileIdentity file, DWORD access, DWORD sharing, std::unique_ptr<Entry>& entry);
    // For a newly created file, which nobody else can have open. It is identified only if another file is
    // opened meanwhile. The descriptor must outlive the entry.
    std::unique_ptr<Entry> add(int descriptor, DWORD access, DWORD sharing);
    // Whether every open of the file shares deletion.
    bool mayDelete(FileIdentity file);

    // Writes all buffered data of the file to the host. False if there was no cache or writing failed.
    bool passOn(FileIdentity file);
    // Ends all caches; one whose data cannot be written stays.
    void endCaches();

    // Calls `look` with the descriptor of the last file opened, if that is still open and has this path.
    template <class Look>
    bool lookAtLast(const std::string& path, const Look& look) {
        const std::lock_guard lock(mutex_);
        const bool open = last_ != nullptr && path == lastPath_;
        if (open) {
            look(lastDescriptor_);
        }
        return open;
    }
    // Call it when a path may lead elsewhere from now on.
    void forgetLast();

private:
    struct Opens {
        Entry* cached = nullptr;  // the only open, if it has a cache
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
