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

// The diskette that a command works on: an image or a block device behind the layer's drive A:, or a drive of
// Windows itself. One source for each platform.

namespace tools::emergency_disk {

// A diskette that is looked at. Operations return a Windows error code, 0 for success. Names and labels are
// ANSI; files lie in the root directory.
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
    // Brings everything onto the medium; whatever is read afterwards is what that really holds.
    virtual DWORD settle() = 0;
    virtual DWORD readSectors(DWORD first, std::span<std::byte> buffer) = 0;
    virtual DWORD fats(Fats& fats) = 0;
    // An empty text when there is none.
    virtual DWORD label(std::string& label) = 0;
    // ERROR_FILE_NOT_FOUND when there is no such file.
    virtual DWORD file(const std::string& name, File& file) = 0;
    // As many bytes as `contents` has, which is shortened to what was read.
    virtual DWORD readFile(const std::string& name, std::vector<unsigned char>& contents) = 0;
};

// For reading only what lies at a target. Throws Problem: noDiskette (nothing there, or a drive without one),
// refused (of another size, or in use), failure.
std::unique_ptr<DisketteView> openForReading(const Target& target);

// The label as a diskette keeps it, in upper case; empty when it has a character that no label can have. Both
// ANSI.
std::string storedLabel(const std::string& label);

// The diskette that is made, in its drive. Until prepare() nothing is done to it.
class Diskette {
public:
    virtual ~Diskette() = default;
    virtual DisketteView& view() = 0;
    // The root of its drive, as the disk maker names it ("A:\").
    virtual std::string root() const = 0;
    // False for an image that is yet to be made: a blank diskette is in the drive then.
    virtual bool exists() const = 0;
    // Throws Problem when the diskette cannot be written, as far as the system tells that without trying:
    // unsuitableDrive, noDiskette, refused (not formatted, or no 1.44 MB diskette), writeProtected, or
    // failure (no permission, no space for an image).
    virtual void requireWritable() = 0;
    // From here on the drive holds what is worked on. Throws Problem.
    virtual void prepare() = 0;
    // Why making it has failed, found by reading and perhaps rewriting each of its sectors: writeProtected,
    // noDiskette, mediumError (the text names the sector), or failure when nothing is wrong with it now.
    virtual Problem diagnose() = 0;
    // Brings everything onto the medium, and an image to its place. Throws Problem.
    virtual void commit() = 0;
};

// Where a diskette is made: the system with its drive. While it exists, Windows' calls go there.
class Workplace {
public:
    virtual ~Workplace() = default;
    // The diskette at the target, in its drive. Throws Problem like openForReading, but an image may be
    // missing. The result lives at most as long as the workplace.
    virtual std::unique_ptr<Diskette> insert(const MakeOptions& options) = 0;
};
std::unique_ptr<Workplace> workplaceFor(const MakeOptions& options);

}  // namespace tools::emergency_disk
