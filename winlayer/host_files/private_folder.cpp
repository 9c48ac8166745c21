#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "winlayer/base/system_settings.h"
#include "winlayer/host_files/host_folder.h"
#include "winlayer/text/case_folding.h"

namespace winlayer {

namespace fs = std::filesystem;

PrivateFolder::PrivateFolder(const SystemSettings& settings, std::shared_ptr<HostKnowledge> knowledge)
    : HostFolder(settings, std::move(knowledge), {}), madeFor_(settings) {}

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
    // No path exists below the null device: if the folder cannot be made, nothing is found on the drive.
    if (::mkdtemp(pattern.data()) == nullptr) {
        folder_ = "/dev/null";
        return;
    }
    // Drives::fromHost() compares paths without links.
    const fs::path physical = fs::canonical(pattern, error);
    folder_ = error ? pattern : physical.string();
    for (std::string below : directories()) {
        std::replace(below.begin(), below.end(), '\\', '/');
        fs::create_directories(fs::path(folder_) / below, error);
    }
    isMade_ = true;
}

// Paths below the root.
std::vector<std::string> PrivateFolder::directories() const {
    const std::string windows = madeFor_.windowsDirectory().substr(3);
    return {windows, madeFor_.systemDirectory().substr(3), windows + "\\TEMP"};
}

// A drive not used yet contains only its directories. A file search looks in each of them; making the folder
// for that would cost more than the search itself.
DWORD PrivateFolder::facts(const std::string& path, FileFacts& facts) {
    return isSurelyAbsent(path) ? ERROR_FILE_NOT_FOUND : HostFolder::facts(path, facts);
}

bool PrivateFolder::isSurelyAbsent(const std::string& path) const {
    if (isMade_) {
        return false;
    }
    const std::string wanted = foldCase(path);
    const std::size_t separator = wanted.rfind('\\');
    bool inKnown = separator == std::string::npos;
    for (const std::string& directory : directories()) {
        const std::string known = foldCase(directory);
        if (wanted.empty() || wanted.back() == '\\' || wanted == known) {
            return false;
        }
        inKnown = inKnown || wanted.substr(0, separator) == known;
    }
    return inKnown;
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
