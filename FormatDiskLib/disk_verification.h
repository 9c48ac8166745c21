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

// Compares a finished emergency diskette with the archive that it was made from. Reads only sectors, in the
// one layout that the boot sector describes, and so sees what a PC will see.
class DiskVerification {
public:
    // Fills the buffer with whole sectors from sector `first` (0 = boot sector); false if one cannot be read.
    using ReadSectors = std::function<bool(DWORD first, std::span<std::byte> buffer)>;
    // Called before each track is read and after each step, with the percentage done; false stops it.
    using GoOn = std::function<bool(int percent)>;

    // Both are called on the thread of Passes; their exceptions propagate.
    DiskVerification(ReadSectors read, GoOn goOn);

    // Whether the diskette passes every boot check, both FATs are equal, and each of the files, named as in
    // the archive, is in the root directory with the archive's content (the first of several records of one
    // name). A file that is not in a sound archive is skipped; if the archive has a fault, a missing file
    // fails. Also false if stopped.
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
