#include "winlayer/files/drives.h"

#include <algorithm>
#include <stdexcept>

#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/host_files/host_folder.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {

namespace fs = std::filesystem;

namespace {

std::size_t driveIndex(char letter) {
    const char upper = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    return static_cast<std::size_t>(static_cast<unsigned char>(upper)) - 'A';
}

std::string withoutEndingSlash(std::string path) {
    while (!path.empty() && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

// The host path with the links in its folder resolved, so that ".." is the folder that the host means. A link
// as the last name is kept: that name was asked for. Throws std::invalid_argument for a relative path when
// the current directory no longer exists.
std::string physicalPath(const fs::path& hostPath) {
    std::error_code error;
    const fs::path path = withoutEndingSlash(fs::absolute(hostPath, error).string());
    if (error) {
        throw std::invalid_argument("no Windows path leads to " + hostPath.string());
    }
    const bool named = path.filename() != "." && path.filename() != "..";
    const fs::path folder = fs::weakly_canonical(named ? path.parent_path() : path, error);
    if (error) {
        return withoutEndingSlash(path.lexically_normal().string());
    }
    return withoutEndingSlash((named ? folder / path.filename() : folder).string());
}

// Whether Windows takes each element of the path as one unchanged name.
bool hasWindowsNames(const std::string& below) {
    const fs::path path = below;
    return std::all_of(path.begin(), path.end(),
                       [](const fs::path& name) { return isWindowsName(name.string()); });
}

// Whether a host path is a folder or lies in it; `below` is the rest of the path.
bool liesIn(const std::string& path, const std::string& folder, std::string& below) {
    if (path.compare(0, folder.size(), folder) != 0) {
        return false;
    }
    if (path.size() > folder.size() && path[folder.size()] != '/') {
        return false;
    }
    below = path.size() > folder.size() ? path.substr(folder.size() + 1) : std::string();
    return true;
}

}  // namespace

Drives::Drives(const SystemSettings& settings)
    : settings_(settings), knowledge_(std::make_shared<HostKnowledge>()) {}

Drives::~Drives() = default;

void Drives::workAlone() {
    knowledge_->alone = true;
    knowledge_->names.trust();
}

void Drives::settle() {
    knowledge_->alone = false;
    knowledge_->shares->endCaches();
}

void Drives::mount(char letter, std::shared_ptr<FileSystem> files, UINT type) {
    drives_.at(driveIndex(letter)) = Drive{std::move(files), type};
}

void Drives::mountFolder(char letter, const fs::path& folder, UINT type) {
    mount(letter, std::make_shared<HostFolder>(settings_, knowledge_, physicalPath(folder / ".")), type);
}

void Drives::mountPrivateFolder(char letter, UINT type) {
    mount(letter, std::make_shared<PrivateFolder>(settings_, knowledge_), type);
}

void Drives::unmount(char letter) {
    drives_.at(driveIndex(letter)).reset();
}

const Drive* Drives::find(char letter) const {
    const std::size_t index = driveIndex(letter);
    return index < drives_.size() && drives_[index] ? &*drives_[index] : nullptr;
}

DWORD Drives::letters() const {
    DWORD mask = 0;
    for (std::size_t index = 0; index < drives_.size(); ++index) {
        mask |= drives_[index] ? 1u << index : 0;
    }
    return mask;
}

std::string Drives::currentDirectory() const {
    const std::lock_guard lock(currentMutex_);
    return current_;
}

DWORD Drives::setCurrentDirectory(const std::string& path) {
    ResolvedPath resolved;
    if (path.empty()) {
        return ERROR_INVALID_NAME;
    }
    if (const DWORD error = resolvePath(path, currentDirectory(), resolved); error != 0) {
        return error;
    }
    std::string directory = std::string(1, resolved.letter) + ":\\" + resolved.below;
    std::shared_ptr<FileSystem> files;
    std::string below;
    FileFacts facts;
    DWORD error = resolve(directory, files, below);
    if (error == 0) {
        error = files->facts(below, facts);
    }
    if (error == 0 && (facts.attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        error = ERROR_DIRECTORY;
    }
    if (error == 0) {
        const std::lock_guard lock(currentMutex_);
        current_ = std::move(directory);
    }
    return error;
}

DWORD Drives::resolve(const std::string& path, std::shared_ptr<FileSystem>& files, std::string& below) const {
    ResolvedPath resolved;
    const std::unique_lock lock(currentMutex_);
    if (const DWORD error = resolvePath(path, current_, resolved); error != 0) {
        return error;
    }
    const Drive* drive = find(resolved.letter);
    if (drive == nullptr || drive->files == nullptr) {
        return drive == nullptr ? ERROR_PATH_NOT_FOUND : ERROR_NOT_READY;
    }
    files = drive->files;
    below = std::move(resolved.below);
    return 0;
}

std::string Drives::fromHost(const fs::path& hostPath) const {
    const std::string path = physicalPath(hostPath);
    std::string best;
    std::string bestRoot;
    char letter = 0;
    for (std::size_t index = 0; index < drives_.size(); ++index) {
        const auto folder =
            drives_[index] ? std::dynamic_pointer_cast<HostFolder>(drives_[index]->files) : nullptr;
        std::string below;
        if (folder != nullptr && folder->isMade() && liesIn(path, folder->root(), below) &&
            (letter == 0 || folder->root().size() > bestRoot.size())) {
            letter = static_cast<char>('A' + index);
            best = below;
            bestRoot = folder->root();
        }
    }
    const bool named = letter != 0 && hasWindowsNames(best);
    std::replace(best.begin(), best.end(), '/', '\\');
    std::string ansi;
    if (!named || !fromUtf8(settings_, best, ansi)) {
        throw std::invalid_argument("no Windows path leads to " + path);
    }
    return std::string(1, letter) + ":\\" + ansi;
}

fs::path Drives::toHost(const std::string& path) const {
    std::shared_ptr<FileSystem> files;
    std::string below;
    const DWORD error = resolve(path, files, below);
    const auto folder = std::dynamic_pointer_cast<HostFolder>(files);
    std::string hostPath;
    struct stat facts;
    if (error != 0 || folder == nullptr || folder->locate(below, hostPath, facts) == ERROR_PATH_NOT_FOUND) {
        throw std::invalid_argument(path + " is on no host folder");
    }
    return hostPath == "/" ? hostPath : withoutEndingSlash(hostPath);
}

}  // namespace winlayer
