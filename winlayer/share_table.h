#pragma once
#include <sys/types.h>

#include <memory>
#include <mutex>
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

// Who has which host file open in this machine, and what each of them lets others do. An open that asks for
// none of reading, writing and deletion takes no part.
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

    private:
        friend class ShareTable;

        std::shared_ptr<ShareTable> table_;
        DWORD access_;
        DWORD sharing_;
        FileIdentity file_;
        int descriptor_ = -1;  // the file, while nobody has asked which one it is
    };

    // False: an earlier open does not share what this one asks for, or the other way round.
    bool open(FileIdentity file, DWORD access, DWORD sharing, std::unique_ptr<Entry>& entry);
    // For a file that was made just now, which nobody else can have open. Which file it is need not be asked
    // unless another is opened while it is open. The descriptor must outlive the entry.
    std::unique_ptr<Entry> add(int descriptor, DWORD access, DWORD sharing);
    // Whether every open of the file shares its deletion.
    bool mayDelete(FileIdentity file);

private:
    struct Opens {
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
    void close(const Entry& entry);

    std::mutex mutex_;
    std::unordered_map<FileIdentity, Opens, Hash> opens_;
    std::vector<Entry*> new_;
};

}  // namespace winlayer
