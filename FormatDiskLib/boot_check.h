#pragma once
#include <windows.h>

#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "boot_sector.h"

// Tells whether a diskette will start, by walking it as the boot code does.

namespace boot_check {

using Sector = std::span<unsigned char, boot_sector::size>;

// Fills the sector with the given number (0 = boot sector) of a 1.44 MB diskette; false when it cannot be
// read.
using SectorReader = std::function<bool(DWORD number, Sector sector)>;

struct Finding {
    std::string name;      // short and fixed, as in "loader-checksum"
    bool passed;           //
    std::string sentence;  // what was found, in plain English

    bool unreadable = false;  // it failed because a sector cannot be read
};

struct Report {
    std::vector<Finding> findings;  // in the order of the walk; it ends where nothing further can be told
    bool loaderStarts = false;      // the boot code of this system is there and would enter the loader

    // Whether every check passed. Stricter than loaderStarts, because the boot code looks neither at the FAT
    // nor at the end of the file: it would also enter a loader of which it read only a part.
    bool passed() const;
};

// Walks a diskette. `read` is called on this thread, may be asked for a sector more than once, and may throw;
// what it throws passes through. Result: the findings and both verdicts.
Report CheckDiskette(const SectorReader& read);

// Compares the parameter block of a boot sector with that of the emergency diskette.
Finding CheckParameterBlock(std::span<const unsigned char, boot_sector::size> bootSector);

// Checks the content of a loader file by itself, before it is put on a diskette: its length and what the boot
// code looks at. Result: the findings; loaderStarts tells what the boot code would make of the file when it
// lies on a diskette in one piece.
Report CheckLoader(std::span<const unsigned char> file);

}  // namespace boot_check
