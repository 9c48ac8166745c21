#pragma once
#include <array>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "winlayer/file_system/file_system.h"

namespace winlayer {

struct SystemSettings;
struct HostKnowledge;

struct Drive {
    std::shared_ptr<FileSystem> files;  // null: a drive letter without anything behind it
    UINT type = DRIVE_FIXED;            // what GetDriveTypeA reports
};

// The drive letters A to Z, the current directory, and the way from a Windows path to a file system. Drives
// are mounted before the product runs; the current directory may change at any time, on any thread.
class Drives {
public:
    // The current machine's.
    static Drives& current();

    explicit Drives(const SystemSettings& settings);
    ~Drives();

    // For a program whose files on the host no other program changes meanwhile or reads before it has closed
    // them, and which puts them on the medium itself where that matters: from now on files are read ahead,
    // small writes gathered, flushes left to the host, and folders remembered. Before the product runs.
    void workAlone();
    // Ends that for the files that are open: the host gets what is still kept of them.
    void settle();

    void mount(char letter, std::shared_ptr<FileSystem> files, UINT type);
    // A host folder as a drive.
    void mountFolder(char letter, const std::filesystem::path& folder, UINT type = DRIVE_FIXED);
    // A folder of the machine's own, made when it is first used and removed with the drive.
    void mountPrivateFolder(char letter, UINT type = DRIVE_FIXED);
    void unmount(char letter);
    // Null when the letter has no drive.
    const Drive* find(char letter) const;
    // Bit 0 = A.
    DWORD letters() const;

    // Absolute, as in "C:\\work", without a trailing backslash except for a root.
    std::string currentDirectory() const;
    DWORD setCurrentDirectory(const std::string& path);

    // Splits any Windows path (relative ones against the current directory; "." and ".." resolved; forward
    // slashes taken as backslashes) into its drive and the path below it. ERROR_PATH_NOT_FOUND when there is
    // no such drive, ERROR_NOT_READY when nothing is behind it, ERROR_INVALID_NAME for a name that no file
    // can have.
    DWORD resolve(const std::string& path, std::shared_ptr<FileSystem>& files, std::string& below) const;

    // The Windows path of a host path, through the drive whose folder holds it ("Z:" holds everything). Links
    // on the way are followed. Throws std::invalid_argument when a name ends in a dot or a blank or has a
    // character that Windows names or the ANSI code page lack.
    std::string fromHost(const std::filesystem::path& hostPath) const;
    // The host path behind a Windows path. Throws std::invalid_argument when it is on no host folder.
    std::filesystem::path toHost(const std::string& path) const;

private:
    const SystemSettings& settings_;
    std::shared_ptr<HostKnowledge> knowledge_;
    std::array<std::optional<Drive>, 26> drives_;
    mutable std::mutex currentMutex_;
    std::string current_ = "C:\\";
};

}  // namespace winlayer
