#pragma once
#include <windows.h>

#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "boot_sector.h"

// Checks whether a diskette boots, by following the boot code step by step.

namespace boot_check {

using Sector = std::span<unsigned char, boot_sector::size>;

// Reads the sector with the given number (0 = boot sector) of a 1.44 MB diskette; false if it cannot be read.
using SectorReader = std::function<bool(DWORD number, Sector sector)>;

struct Finding {
    std::string name;      // short and fixed, such as "loader-checksum"
    bool passed;           //
    std::string sentence;  // what was found, in plain English

    bool unreadable = false;  // it failed because a sector cannot be read
};

struct Report {
    std::vector<Finding> findings;  // in order; they end where nothing further can be checked
    bool loaderStarts = false;      // our boot code is present and would enter the loader

    // Whether every check passed. Stricter than loaderStarts, because the boot code looks neither at the FAT
    // nor at the end of the file: it would also enter a loader that it read only in part.
    bool passed() const;
};

// Checks a diskette. `read` is called on this thread, possibly more than once for a sector; its exceptions
// propagate. Result: the findings and both verdicts.
Report CheckDiskette(const SectorReader& read);

// Compares the parameter block of a boot sector with that of the emergency diskette.
Finding CheckParameterBlock(std::span<const unsigned char, boot_sector::size> bootSector);

// Checks a loader file before it is put on a diskette: its length and what the boot code checks. Result: the
// findings; loaderStarts is whether the boot code would enter the file if it were contiguous on a diskette.
Report CheckLoader(std::span<const unsigned char> file);

}  // namespace boot_check
