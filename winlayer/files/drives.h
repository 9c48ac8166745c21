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
    std::shared_ptr<FileSystem> files;  // null: the drive letter has no file system
    UINT type = DRIVE_FIXED;            // what GetDriveTypeA reports
};

// The drive letters A to Z, the current directory, and the resolution of Windows paths. Drives are mounted
// before the product runs; the current directory may change at any time, on any thread.
class Drives {
public:
    // The current machine's.
    static Drives& current();

    explicit Drives(const SystemSettings& settings);
    ~Drives();

    // Exclusive mode, for a program that syncs files itself where that matters and whose host files no other
    // program changes meanwhile or reads before they are closed: reads ahead, gathers small writes, leaves
    // flushes to the host and remembers folders. Call it before the product runs.
    void workAlone();
    // Ends exclusive mode and writes all cached data of open files to the host.
    void settle();

    void mount(char letter, std::shared_ptr<FileSystem> files, UINT type);
    // Mounts a host folder as a drive.
    void mountFolder(char letter, const std::filesystem::path& folder, UINT type = DRIVE_FIXED);
    // A folder private to the machine, made on first use and removed with the drive.
    void mountPrivateFolder(char letter, UINT type = DRIVE_FIXED);
    void unmount(char letter);
    // Null when the letter has no drive.
    const Drive* find(char letter) const;
    // Bit 0 = A.
    DWORD letters() const;

    // Absolute, as in "C:\\work", without a trailing backslash except for a root.
    std::string currentDirectory() const;
    DWORD setCurrentDirectory(const std::string& path);

    // Splits a Windows path (relative ones are resolved against the current directory; "." and ".." are
    // resolved; forward slashes count as backslashes) into its drive and the path below it.
    // ERROR_PATH_NOT_FOUND if there is no such drive, ERROR_NOT_READY if it has no file system,
    // ERROR_INVALID_NAME for a name that no file can have.
    DWORD resolve(const std::string& path, std::shared_ptr<FileSystem>& files, std::string& below) const;

    // The Windows path of a host path, on the drive whose folder contains it ("Z:" contains everything).
    // Links in the path are followed. Throws std::invalid_argument if a name ends in a dot or a blank or has
    // a character that Windows names or the ANSI code page cannot contain.
    std::string fromHost(const std::filesystem::path& hostPath) const;
    // The host path of a Windows path. Throws std::invalid_argument if its drive is not a host folder.
    std::filesystem::path toHost(const std::string& path) const;

private:
    const SystemSettings& settings_;
    std::shared_ptr<HostKnowledge> knowledge_;
    std::array<std::optional<Drive>, 26> drives_;
    mutable std::mutex currentMutex_;
    std::string current_ = "C:\\";
};

}  // namespace winlayer
