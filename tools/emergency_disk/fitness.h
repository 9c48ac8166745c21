#pragma once
#include "tools/emergency_disk/disk_plan.h"
#include "tools/emergency_disk/diskette.h"

namespace tools::emergency_disk {

// Checks, by reading a diskette, that the files of a plan fit once everything on it has been deleted: its
// volume layout matches the boot sector, there are enough free clusters, and those of the loader are
// contiguous. File data is not read, which would take as long as writing it. Free clusters are used in
// ascending order, as on an empty disk. Throws Problem: noDiskette, refused (not formatted, a different
// layout, or damaged), mediumError (a sector cannot be read, or a cluster needed for the loader is marked as
// bad) or doesNotFit.
void requireFit(DisketteView& diskette, const DiskPlan& plan);

}  // namespace tools::emergency_disk
