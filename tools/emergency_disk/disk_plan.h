#pragma once
#include <windows.h>

#include <string>
#include <vector>

#include "tools/common/archive_names.h"
#include "tools/common/host_path.h"

namespace tools::emergency_disk {

// The contents of a diskette: the fourteen files with their data and attributes, in the order of writing.
struct PlannedFile {
    std::string name;
    DWORD attributes;
    std::vector<unsigned char> contents;
};
using DiskPlan = std::vector<PlannedFile>;

inline constexpr const char* loaderName = "QZLOADER.BIN";

// Reads an archive and checks that a diskette can be made from it: all records are sound, all files of the
// diskette exist and are not empty, everything fits, and the boot code will accept the loader. Warns when the
// archive contains a file more than once. Throws Problem: failure (not readable), invalidArchive or
// doesNotFit.
DiskPlan readPlan(const Path& archive, const Warn& warn = {});

}  // namespace tools::emergency_disk
