#pragma once
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tools/common/exit_code.h"
#include "tools/emergency_disk/commands.h"

// The diskette of a command: an image or a block device in the layer's drive A:, or a drive of Windows
// itself. One source for each platform.

namespace tools::emergency_disk {

// Read access to a diskette. Operations return a Windows error code, 0 for success. Names and labels are
// ANSI; files are in the root directory.
class DisketteView {
public:
    struct Fats {
        DWORD first = 0;        // sector
        DWORD count = 0;        //
        DWORD sectorsEach = 0;  //
    };
    struct File {
        DWORD attributes = 0;
        std::uint64_t size = 0;  // bytes
    };

    virtual ~DisketteView() = default;
    // Flushes everything to the medium; later reads return what it really holds.
    virtual DWORD settle() = 0;
    virtual DWORD readSectors(DWORD first, std::span<std::byte> buffer) = 0;
    virtual DWORD fats(Fats& fats) = 0;
    // Empty when there is none.
    virtual DWORD label(std::string& label) = 0;
    // ERROR_FILE_NOT_FOUND when there is no such file.
    virtual DWORD file(const std::string& name, File& file) = 0;
    // Reads up to the size of `contents`, which is shortened to what was read.
    virtual DWORD readFile(const std::string& name, std::vector<unsigned char>& contents) = 0;
};

// Opens a target read-only. Throws Problem: noDiskette (nothing there, or a drive without one), refused (of
// another size, or in use), failure.
std::unique_ptr<DisketteView> openForReading(const Target& target);

// The label as stored on a diskette, in upper case; empty when it has a character that is invalid in labels.
// Both ANSI.
std::string storedLabel(const std::string& label);

// The diskette being made, in its drive. It is not changed before prepare().
class Diskette {
public:
    virtual ~Diskette() = default;
    virtual DisketteView& view() = 0;
    // The root of its drive, in the disk maker's form ("A:\").
    virtual std::string root() const = 0;
    // False for an image not yet created: the drive then contains a blank diskette.
    virtual bool exists() const = 0;
    // Throws Problem when the diskette cannot be written, as far as the system reports that without a try:
    // unsuitableDrive, noDiskette, refused (not formatted, or not a 1.44 MB diskette), writeProtected, or
    // failure (no permission, no space for an image).
    virtual void requireWritable() = 0;
    // Puts the diskette to be written into the drive. Throws Problem.
    virtual void prepare() = 0;
    // Why making it failed, found by reading and perhaps rewriting each of its sectors: writeProtected,
    // noDiskette, mediumError (the text names the sector), or failure when nothing is wrong with it now.
    virtual Problem diagnose() = 0;
    // Flushes everything to the medium, and moves an image to its final name. Throws Problem.
    virtual void commit() = 0;
};

// The system with the drive in which a diskette is made. While it exists, Windows calls go there.
class Workplace {
public:
    virtual ~Workplace() = default;
    // The diskette at the target, in its drive. Throws Problem like openForReading, but an image may be
    // missing. The result must not outlive this object.
    virtual std::unique_ptr<Diskette> insert(const MakeOptions& options) = 0;
};
std::unique_ptr<Workplace> workplaceFor(const MakeOptions& options);

}  // namespace tools::emergency_disk
