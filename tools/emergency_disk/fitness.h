#pragma once
#include "tools/emergency_disk/disk_plan.h"
#include "tools/emergency_disk/diskette.h"

namespace tools::emergency_disk {

// Reads from a diskette whether the files of a plan can be put on it once everything on it has been deleted:
// its volume is laid out as the boot sector describes it, the free clusters suffice, and those of the loader
// lie in one run. The sectors of files are not read, which would take as long as writing them. Free clusters
// are taken in ascending order, as on an empty disk. Throws Problem: noDiskette, refused (not formatted, laid
// out otherwise, or damaged), mediumError (a sector cannot be read, or a cluster in the loader's place is
// marked as bad) or doesNotFit.
void requireFit(DisketteView& diskette, const DiskPlan& plan);

}  // namespace tools::emergency_disk
