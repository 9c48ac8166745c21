#pragma once
#include <string>

namespace tools::emergency_disk {

// What can be told of deleting everything below a directory ("A:\"), before and after.

// Throws Problem(refused) that names the first entry for which it would fail.
void requireErasable(const std::string& directory);

// When it has stopped: the entry at which it did, with the reason; empty when nothing is left.
std::string erasingStoppedAt(const std::string& directory);

}  // namespace tools::emergency_disk
