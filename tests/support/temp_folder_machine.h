#pragma once
#include <filesystem>

#include "support/temp_folder.h"
#include "winlayer/machine.h"

// Where a Windows path of the current machine lies on the host.
inline std::filesystem::path hostPath(const std::string& path) {
    return winlayer::Machine::current().drives.toHost(path);
}
inline std::filesystem::path hostPath(const TempFolder& folder) {
    return hostPath(folder.path());
}
