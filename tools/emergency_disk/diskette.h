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

// What lies at a target before anything is done to it.
struct TargetFacts {
    bool exists = false;
    bool isDiskette = false;  // 1.44 MB with a FAT12 volume
    std::string label;        // ANSI
};

// Looks at a target. Throws Problem: noDiskette (a device without one), refused (a device of another size, or
// one that is in use), failure.
TargetFacts examine(const Target& target);

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

// For reading only what lies at a target. Throws Problem like examine, and noDiskette for a missing image.
std::unique_ptr<DisketteView> openForReading(const Target& target);

// The diskette that is made.
class Diskette {
public:
    virtual ~Diskette() = default;
    virtual DisketteView& view() = 0;
    // The root of its drive, as the disk maker names it ("A:\").
    virtual std::string root() const = 0;
    // Why it does not work, found by reading and perhaps rewriting each of its sectors (which must therefore
    // hold nothing of value): writeProtected, noDiskette, mediumError (the text names the sector), or failure
    // when nothing is wrong with it now.
    virtual Problem diagnose() = 0;
    // Brings everything onto the medium, and an image to its place. Throws Problem.
    virtual void commit() = 0;
};

// Where a diskette is made: the system with its drive. While it exists, Windows' calls go there.
class Workplace {
public:
    virtual ~Workplace() = default;
    // Throws Problem. The result lives at most as long as the workplace.
    virtual std::unique_ptr<Diskette> insert(const MakeOptions& options) = 0;
};
std::unique_ptr<Workplace> workplaceFor(const MakeOptions& options);

}  // namespace tools::emergency_disk
