#pragma once
#include <windows.h>

#include <string>

// The component's entry in the host's list of components.
namespace registration {

// The listing of a library file: version and order numbers, its path, and the picture beside it of the same
// name (nothing when the path has no point).
std::string Listing(const std::string& libraryPath);

// Write the listing and the display name, remove the listing. Failures of the property store are not told.
void Register(HINSTANCE module);
void Unregister();

}  // namespace registration
