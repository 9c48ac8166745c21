#pragma once
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

#include "winlayer/file_system.h"

namespace winlayer {

struct Drive {
    std::shared_ptr<FileSystem> files;  // null: a drive letter without anything behind it
    UINT type = DRIVE_FIXED;            // what GetDriveTypeA reports
};

// The drive letters A to Z, the current directory, and the way from a Windows path to a file system.
class Drives {
public:
    void mount(char letter, std::shared_ptr<FileSystem> files, UINT type);
    // A host folder as a drive.
    void mountFolder(char letter, const std::filesystem::path& folder, UINT type = DRIVE_FIXED);
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
    // no such drive.
    DWORD resolve(const std::string& path, std::shared_ptr<FileSystem>& files, std::string& below) const;

    // The Windows path of a host path, through the drive whose folder holds it ("Z:" holds everything).
    // Throws std::invalid_argument when a character has no place in the ANSI code page.
    std::string fromHost(const std::filesystem::path& hostPath) const;

private:
    Drive drives_[26];
    std::string current_;
};

}  // namespace winlayer
