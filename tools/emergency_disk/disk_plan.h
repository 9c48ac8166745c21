#pragma once
#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tools/common/archive_names.h"
#include "tools/common/host_path.h"

namespace tools::emergency_disk {

// What belongs on a diskette: the fourteen files with their contents and attributes, in the order of writing.
struct PlannedFile {
    std::string name;
    DWORD attributes;
    std::vector<unsigned char> contents;
};
using DiskPlan = std::vector<PlannedFile>;

inline constexpr const char* loaderName = "QZLOADER.BIN";

// A 1.44 MB diskette as it is usually formatted, and as the boot sector describes it: 2,880 sectors, one of
// them the boot sector, then two FATs, the root directory, and clusters of one sector.
inline constexpr DWORD clusterBytes = 512;
inline constexpr DWORD firstFatSector = 1;
inline constexpr DWORD fatSectors = 9;
inline constexpr DWORD firstRootSector = firstFatSector + 2 * fatSectors;
inline constexpr DWORD rootSectors = 14;
inline constexpr std::size_t rootEntries = 224;
inline constexpr DWORD firstDataSector = firstRootSector + rootSectors;
inline constexpr DWORD diskClusters = 2880 - firstDataSector;

// Reads an archive and checks that a diskette can be made from it: every record is sound, every file of the
// diskette is there and none is empty, everything fits, and the boot code will accept the loader.
// Warns when the archive holds a file more than once. Throws Problem: failure (not readable), invalidArchive
// or doesNotFit.
DiskPlan readPlan(const Path& archive, const Warn& warn = {});

}  // namespace tools::emergency_disk
