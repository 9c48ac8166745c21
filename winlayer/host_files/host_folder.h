#pragma once
#include <sys/stat.h>

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>

#include "winlayer/file_system/file_system.h"
#include "winlayer/host_files/name_index.h"
#include "winlayer/host_files/share_table.h"

namespace winlayer {

class HostDescriptor;
struct SystemSettings;

// What the host folders of one machine share, since two of them may lead to the same files.
struct HostKnowledge {
    bool alone = false;  // as Drives::workAlone() says
    std::shared_ptr<ShareTable> shares = std::make_shared<ShareTable>();
    NameIndex names;
};

// A host folder as a file system. Names are found as they are spelt, with one call of the host; only one that
// is missing is looked for without case, element by element. Text becomes UTF-8 here. There are no short
// names: a file has the one name that its folder shows.
//
// Links are followed, and shown as what they lead to with FILE_ATTRIBUTE_REPARSE_POINT; one that leads
// nowhere shows as an empty file. Removing a link removes the link, and attributes that it is given do not
// reach what it leads to: it has no place for any but the archive attribute (ERROR_NOT_SUPPORTED). A walk
// that follows a link back into a directory it came through would not end, so listing a directory by such a
// link fails with ERROR_CANT_RESOLVE_FILENAME. What is neither a regular file nor a directory shows as a file
// and refuses to open (ERROR_ACCESS_DENIED). A name that Windows could not have fails the listing with
// ERROR_INVALID_NAME, one that the code page cannot hold with ERROR_NO_UNICODE_TRANSLATION: none is left out.
class HostFolder : public FileSystem {
public:
    HostFolder(const SystemSettings& settings, std::shared_ptr<HostKnowledge> knowledge, std::string root);

    // The folder itself, without a separator behind it ("" is the host's root).
    virtual const std::string& root();
    // False for a folder that nobody has used yet, in which no host path can lie.
    virtual bool isMade() const { return true; }

    // The host path of a path below the root, spelt as the host has it; the last element may be missing
    // (ERROR_FILE_NOT_FOUND), the path is then the one it would have.
    DWORD locate(const std::string& below, std::string& path, struct stat& facts);

    DWORD open(const std::string& path, const OpenRequest& request, std::unique_ptr<OpenFile>& file,
               bool& existed) override;
    DWORD facts(const std::string& path, FileFacts& facts) override;
    DWORD list(const std::string& directory, std::vector<FileFacts>& entries) override;
    DWORD search(const std::string& directory, const std::string& pattern,
                 std::unique_ptr<Listing>& listing) override;
    DWORD setAttributes(const std::string& path, DWORD attributes) override;
    DWORD removeFile(const std::string& path) override;
    DWORD createDirectory(const std::string& path) override;
    DWORD removeDirectory(const std::string& path) override;
    DWORD volume(VolumeFacts& facts) override;
    DWORD setLabel(const std::string& label) override;
    DWORD openDevice(const OpenRequest& request, std::unique_ptr<OpenFile>& device) override;

private:
    // What is found under a path.
    struct Found {
        std::string path;
        struct stat facts {};  // of what a link leads to
        bool link = false;
    };

    std::string hostPath(const std::string& below);
    DWORD locate(const std::string& below, Found& found);
    DWORD locateEntry(const std::string& below, Found& found);
    static bool isReadOnly(const Found& found);
    DWORD find(const std::string& below, Found& found);
    DWORD locateWithoutCase(std::string& path);
    std::unique_ptr<OpenFile> fileFor(HostDescriptor descriptor, std::unique_ptr<ShareTable::Entry> share,
                                      const OpenRequest& request, std::uint64_t size) const;
    bool factsOfLast(const std::string& path, FileFacts& facts) const;
    void forgetPaths();
    DWORD walkWithoutCase(const std::string& wanted, std::string& path);
    bool isAbsent(const std::string& below, std::string& path);
    DWORD create(const std::string& path, const OpenRequest& request, std::unique_ptr<OpenFile>& file);
    DWORD openExisting(const Found& found, const OpenRequest& request, std::unique_ptr<OpenFile>& file);
    DWORD mayOverwrite(const std::string& path, const struct stat& known, const OpenRequest& request) const;

    const SystemSettings& settings_;
    const std::shared_ptr<HostKnowledge> knowledge_;
    const std::string root_;
};

// A folder in the host's temporary directory that only its machine knows: made when it is first used, with
// the directories of a Windows installation in it, and removed with everything in it.
class PrivateFolder : public HostFolder {
public:
    PrivateFolder(const SystemSettings& settings, std::shared_ptr<HostKnowledge> knowledge);
    ~PrivateFolder() override;

    const std::string& root() override;
    bool isMade() const override { return isMade_; }
    DWORD facts(const std::string& path, FileFacts& facts) override;
    // Removes it now; what is asked of it later finds nothing.
    void discard();

private:
    void make();
    std::vector<std::string> directories() const;
    bool isSurelyAbsent(const std::string& path) const;

    const SystemSettings& madeFor_;
    std::once_flag made_;
    std::atomic<bool> isMade_{false};
    std::string folder_;
};

}  // namespace winlayer
