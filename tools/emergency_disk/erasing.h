#pragma once
#include <string>

namespace tools::emergency_disk {

// Checks around deleting everything below a directory ("A:\"), before and after.

// Throws Problem(refused) that names the first entry that could not be deleted.
void requireErasable(const std::string& directory);

// After a failure: the entry at which it stopped, with the reason; empty when nothing is left.
std::string erasingStoppedAt(const std::string& directory);

}  // namespace tools::emergency_disk
