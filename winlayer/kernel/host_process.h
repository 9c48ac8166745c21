#pragma once
#include <filesystem>
#include <string>
#include <vector>

namespace winlayer {

// Starts a program of the host that goes on by itself, with its arguments (the first is its own name, by
// convention) in a folder ("" = where this process is). 0, or the host's error number.
int startDetached(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                  const std::filesystem::path& folder);

// The program of this name in the host's search path; empty when there is none.
std::filesystem::path findHostProgram(const std::string& name);

}  // namespace winlayer
