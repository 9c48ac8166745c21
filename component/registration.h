#pragma once
#include <windows.h>

#include <string>

// The component's entry in the host's list of components.
namespace registration {

// The listing of a library file: version and order numbers, the library's path, and that of the picture of
// the same name in the same folder (empty when the path has no dot).
std::string Listing(const std::string& libraryPath);

// Write the listing and the display name; remove the listing. Property store failures are not reported.
void Register(HINSTANCE module);
void Unregister();

}  // namespace registration
