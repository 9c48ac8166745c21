#pragma once
#include <windows.h>

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "boot_sector.h"
#include "zar_check.h"

// Compares a finished emergency diskette with the archive that it was made from. It knows the one layout that
// the boot sector describes, looks at sectors alone, and so sees what a PC will find.
class DiskVerification {
public:
    // Fills the buffer, whole sectors, from sector `first` on (0 = boot sector); false when one of them
    // cannot be read.
    using ReadSectors = std::function<bool(DWORD first, std::span<std::byte> buffer)>;
    // Called before each track is read and after each step, with the per cent done; false ends it.
    using GoOn = std::function<bool(int percent)>;

    // Both are called on the thread of Passes; what they throw passes through.
    DiskVerification(ReadSectors read, GoOn goOn);

    // Whether the boot code would start the loader, both FATs are the same, and each of the files, named as
    // in the archive, is in the root directory with the content that the archive has for it (of several
    // records of one name the first). A file that a sound archive does not hold is passed over; one that
    // cannot be looked up, because the archive has a fault, is not. False also when it was ended.
    bool Passes(const std::vector<std::string>& files, zar::Checker& archive);

private:
    using Sector = std::span<unsigned char, boot_sector::size>;
    struct Track {
        std::array<unsigned char, boot_sector::sectorsPerTrack * boot_sector::size> bytes;
        std::array<bool, boot_sector::sectorsPerTrack> readable;
    };
    struct File {
        DWORD firstCluster;
        DWORD size;  // bytes
    };
    struct Ended {};

    bool Starts();
    bool FatsAgree();
    bool Holds(const std::string& name, zar::Checker& archive, const zar::Entry& record);
    std::optional<File> Find(const std::string& name);
    bool ReadCluster(DWORD cluster, Sector content);
    DWORD NextCluster(DWORD cluster) const;

    bool ReadSector(DWORD number, Sector sector);
    const Track& ReadTrack(unsigned track);
    bool ReadRun(DWORD first, std::span<unsigned char> sectors);
    void Report(std::size_t steps, std::size_t of);
    void GoOnOrEnd() const;

    ReadSectors read_;
    GoOn goOn_;
    int percent_ = 0;
    std::map<unsigned, Track> tracks_;  // read so far
    std::vector<unsigned char> fat_;
    std::vector<unsigned char> root_;
};
