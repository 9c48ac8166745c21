#pragma once
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "winlayer/base/handle_table.h"
#include "winlayer/include/fileapi.h"

// The interface between the file functions and what they work on: host folders, diskettes, devices. Nothing
// here touches the last error: each operation returns a Windows error code (0 = success). Paths are relative
// to the drive's root, in the ANSI code page, with single backslashes between the elements and none at either
// end; "" is the root.

namespace winlayer {

struct Transfer {
    DWORD count = 0;  // bytes moved; fewer than asked with error 0: the end was reached
    DWORD error = 0;
};

// An open file or device. It has no position of its own: every transfer gives an offset.
class OpenFile {
public:
    virtual ~OpenFile() = default;
    virtual Transfer read(std::uint64_t offset, std::span<std::byte> buffer) = 0;
    virtual Transfer write(std::uint64_t offset, std::span<const std::byte> data) = 0;
    virtual DWORD flush() = 0;
    virtual DWORD size(std::uint64_t& bytes) = 0;
    virtual DWORD resize(std::uint64_t bytes) = 0;
    // Called when a handle of the file is closed: hands everything written to the host, or returns why it
    // could not.
    virtual DWORD settle() { return 0; }
    // Device commands; `returned` receives the bytes put into `out`.
    virtual DWORD control(DWORD code, std::span<const std::byte> in, std::span<std::byte> out,
                          DWORD& returned);
};

struct FileFacts {
    std::string name;       // long name, as stored
    std::string shortName;  // 8.3 alias when it differs from the name, otherwise empty
    DWORD attributes = 0;
    std::uint64_t size = 0;
    FILETIME written{};
};

struct OpenRequest {
    DWORD access = 0;       // GENERIC_READ, GENERIC_WRITE
    DWORD sharing = 0;      // FILE_SHARE_...
    DWORD disposition = 0;  // CREATE_NEW to TRUNCATE_EXISTING
    DWORD attributes = 0;   // of a newly created file
    bool writeThrough = false;
    bool deleteOnClose = false;  // the caller deletes the file; this checks that it may
};

struct VolumeFacts {
    std::string label;
    DWORD serial = 0;
    std::string fileSystem;   // as in "FAT"
    DWORD longestName = 255;  // of one path element, in characters
};

// Iterates over the entries of one directory.
class Listing {
public:
    virtual ~Listing() = default;
    // The next entry; ERROR_NO_MORE_FILES after the last.
    virtual DWORD next(FileFacts& entry) = 0;
};

class FileSystem {
public:
    virtual ~FileSystem() = default;
    // `existed` reports whether the file was there before (for CREATE_ALWAYS and OPEN_ALWAYS).
    virtual DWORD open(const std::string& path, const OpenRequest& request, std::unique_ptr<OpenFile>& file,
                       bool& existed) = 0;
    virtual DWORD facts(const std::string& path, FileFacts& facts) = 0;
    // The entries of a directory in the system's order, including "." and ".." except in the root.
    virtual DWORD list(const std::string& directory, std::vector<FileFacts>& entries) = 0;
    // The same one by one, for names that match the pattern. A file system that needs a call for each entry's
    // attributes overrides this and makes the calls during the iteration.
    virtual DWORD search(const std::string& directory, const std::string& pattern,
                         std::unique_ptr<Listing>& listing);
    virtual DWORD setAttributes(const std::string& path, DWORD attributes) = 0;
    virtual DWORD removeFile(const std::string& path) = 0;
    virtual DWORD createDirectory(const std::string& path) = 0;
    virtual DWORD removeDirectory(const std::string& path) = 0;
    virtual DWORD volume(VolumeFacts& facts) = 0;
    // An empty label removes it.
    virtual DWORD setLabel(const std::string& label) = 0;
    // The raw device below the file system, as \\.\A: opens it.
    virtual DWORD openDevice(const OpenRequest& request, std::unique_ptr<OpenFile>& device) = 0;
};

}  // namespace winlayer
