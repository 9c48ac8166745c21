#pragma once
#include <filesystem>
#include <string>
#include <vector>

namespace winlayer {

// Starts a host program that runs on its own, with its arguments (by convention the first is its name) in a
// folder ("" = the current one of this process). Returns 0 or the host's error number.
int startDetached(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                  const std::filesystem::path& folder);

// The program of this name in the host's search path; empty if there is none.
std::filesystem::path findHostProgram(const std::string& name);

}  // namespace winlayer
