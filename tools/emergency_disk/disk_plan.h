#pragma once
#include <windows.h>

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

// Reads an archive and checks that a diskette can be made from it: every record is sound, every file of the
// diskette is there and none is empty, everything fits, and the boot code will accept the loader.
// Warns when the archive holds a file more than once. Throws Problem: failure (not readable), invalidArchive
// or doesNotFit.
DiskPlan readPlan(const Path& archive, const Warn& warn = {});

}  // namespace tools::emergency_disk
