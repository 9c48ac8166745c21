#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "winlayer/host_folder.h"
#include "winlayer/machine.h"

namespace winlayer {

namespace fs = std::filesystem;

PrivateFolder::PrivateFolder(const Machine& machine, std::shared_ptr<HostKnowledge> knowledge)
    : HostFolder(machine, std::move(knowledge), {}), madeFor_(machine) {}

PrivateFolder::~PrivateFolder() {
    discard();
}

const std::string& PrivateFolder::root() {
    std::call_once(made_, [this] { make(); });
    return folder_;
}

void PrivateFolder::make() {
    std::error_code error;
    const fs::path temporary = fs::temp_directory_path(error);
    std::string pattern = ((error ? fs::path("/tmp") : temporary) / "windows-drive-XXXXXX").string();
    // No path leads below the null device: without a folder nothing is found on the drive.
    if (::mkdtemp(pattern.data()) == nullptr) {
        folder_ = "/dev/null";
        return;
    }
    folder_ = pattern;
    for (const std::string& directory :
         {madeFor_.windowsDirectory(), madeFor_.systemDirectory(), madeFor_.windowsDirectory() + "\\TEMP"}) {
        std::string below = directory.substr(3);
        std::replace(below.begin(), below.end(), '\\', '/');
        fs::create_directories(fs::path(folder_) / below, error);
    }
    isMade_ = true;
}

void PrivateFolder::discard() {
    std::call_once(made_, [this] { folder_ = "/dev/null"; });
    if (isMade_.exchange(false)) {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
        folder_ = "/dev/null";
    }
}

}  // namespace winlayer
