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

// State that the host folders of one machine share, since two of them may contain the same files.
struct HostKnowledge {
    bool alone = false;  // exclusive mode, see Drives::workAlone()
    std::shared_ptr<ShareTable> shares = std::make_shared<ShareTable>();
    NameIndex names;
};

// A host folder as a file system. A name spelt as stored is found with one host call; only a missing one is
// searched for without case, element by element. Text is converted to UTF-8 here. There are no short names: a
// file has only the name that its folder shows.
//
// Links are followed, and shown as their targets with FILE_ATTRIBUTE_REPARSE_POINT; one that leads nowhere is
// shown as an empty file. Removing a link removes only the link, and attributes set on a link do not change
// its target: a link can have only the archive attribute (otherwise ERROR_NOT_SUPPORTED). Listing a directory
// by a link back to one of its own path's directories fails with ERROR_CANT_RESOLVE_FILENAME, because a
// recursive walk would not end. Anything but a regular file or directory is shown as a file that does not
// open (ERROR_ACCESS_DENIED). No name is left out: listing fails with ERROR_INVALID_NAME for one that Windows
// cannot have, with ERROR_NO_UNICODE_TRANSLATION for one that the code page lacks.
class HostFolder : public FileSystem {
public:
    HostFolder(const SystemSettings& settings, std::shared_ptr<HostKnowledge> knowledge, std::string root);

    // The folder's path, without a trailing separator ("" is the host's root).
    virtual const std::string& root();
    // False for a folder not made yet, which contains no host path.
    virtual bool isMade() const { return true; }

    // The host path of a path below the root, spelt as stored. If only the last element is missing
    // (ERROR_FILE_NOT_FOUND), the path is the one it would have.
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
    // The result of a path's search.
    struct Found {
        std::string path;
        struct stat facts {};  // of a link's target
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

// A folder in the host's temporary directory, private to its machine: made on first use, with the directories
// of a Windows installation, and removed with all its contents.
class PrivateFolder : public HostFolder {
public:
    PrivateFolder(const SystemSettings& settings, std::shared_ptr<HostKnowledge> knowledge);
    ~PrivateFolder() override;

    const std::string& root() override;
    bool isMade() const override { return isMade_; }
    DWORD facts(const std::string& path, FileFacts& facts) override;
    // Removes it now; later calls find nothing in it.
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
