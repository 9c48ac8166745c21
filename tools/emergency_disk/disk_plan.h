#pragma once
#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tools/common/host_path.h"

namespace tools::emergency_disk {

// What belongs on a diskette: the fourteen files with their contents and attributes, in the order of writing.
struct PlannedFile {
    std::string name;
    DWORD attributes;
    std::vector<unsigned char> contents;
};
using DiskPlan = std::vector<PlannedFile>;

// Reads an archive and checks that a diskette can be made from it: every record is sound, every file of the
// diskette is there and none is empty, everything fits, and the boot code will accept the loader.
// Throws Problem: failure (not readable), invalidArchive or doesNotFit.
DiskPlan readPlan(const Path& archive);

}  // namespace tools::emergency_disk
