#pragma once
#include <filesystem>
#include <memory>
#include <string>

#include "tools/common/staging.h"
#include "tools/emergency_disk/commands.h"
#include "winlayer/diskette/diskette_drive.h"

namespace tools::emergency_disk {

// What lies at a target before anything is done to it.
struct TargetFacts {
    bool exists = false;
    bool isDiskette = false;  // 1.44 MB with a FAT12 volume
    std::string label;
};

// Looks at a target. Throws Problem: noDiskette (a device without one), refused (a device of another size, or
// one that is in use), failure.
TargetFacts examine(const Target& target);

// Makes a staged file a blank 1.44 MB FAT12 diskette. Throws Problem(failure).
void makeBlankImage(const StagedFile& file);

// The diskette that is worked on. An image is built beside its place (from a copy of the old one, or blank)
// and put there by commit(); a device is worked on itself.
class Diskette {
public:
    // state: what goes wrong with it, by the names of --simulate; "" for nothing. Throws Problem.
    Diskette(const Target& target, const std::string& state);

    winlayer::DisketteDrive& drive() { return *drive_; }
    std::shared_ptr<winlayer::DisketteDrive> sharedDrive() { return drive_; }

    // Brings everything onto the medium, and an image to its place. Throws Problem.
    void commit();

private:
    std::unique_ptr<StagedFile> staged_;
    std::shared_ptr<winlayer::DisketteDrive> drive_;
};

// A drive for reading only what lies at a target. Throws Problem like examine, and noDiskette for a missing
// image.
std::shared_ptr<winlayer::DisketteDrive> openForReading(const Target& target);

// Why the diskette in a drive does not work, found by reading and rewriting each of its sectors (which must
// therefore hold nothing of value): writeProtected, noDiskette, mediumError (the text names the sector), or
// failure when nothing is wrong with it now.
Problem diagnose(winlayer::DisketteDrive& drive);

}  // namespace tools::emergency_disk
