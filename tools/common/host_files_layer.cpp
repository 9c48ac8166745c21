// The host's files where Windows is played by the layer: a POSIX system.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <system_error>

#include "tools/common/host_files.h"

namespace tools {

const char* const pathSeparators = "/";

namespace host_files {

namespace fs = std::filesystem;

namespace {

HostError failure(const Path& file, int error) {
    return {file, std::generic_category().message(error)};
}

void check(const Path& file, const std::error_code& error) {
    if (error) throw HostError(file, error.message());
}

// The permissions that a file made by open(2) would get, which mkstemp's private file has not.
void giveUsualPermissions(int file) {
    const mode_t mask = umask(0);
    umask(mask);
    (void)!fchmod(file, 0666 & ~mask);
}

std::string hiddenName(const Path& folder, const std::string& like) {
    return (folder / ("." + like + "part-XXXXXX")).string();
}

}  // namespace

Kind kindOf(const Path& name, std::string* why) {
    std::error_code error;
    const fs::file_status status = fs::status(name.string(), error);
    if (fs::is_regular_file(status)) return Kind::file;
    if (fs::is_directory(status)) return Kind::folder;
    if (fs::exists(status)) return Kind::other;
    if (why) *why = error.message();
    return Kind::missing;
}

std::uint64_t sizeOf(const Path& file) {
    std::error_code error;
    const std::uint64_t size = fs::file_size(file.string(), error);
    check(file, error);
    return size;
}

std::vector<Path> entries(const Path& folder) {
    std::error_code error;
    std::vector<Path> found;
    for (fs::directory_iterator at(folder.string(), error), end; !error && at != end; at.increment(error)) {
        found.emplace_back(at->path().string());
    }
    check(folder, error);
    return found;
}

bool liesIn(const Path& file, const Path& folder) {
    const fs::path inside =
        fs::weakly_canonical(file.string()).lexically_relative(fs::canonical(folder.string()));
    return !inside.empty() && *inside.begin() != "..";
}

Path behindLink(const Path& file) {
    std::error_code error;
    const bool link = fs::is_symlink(fs::symlink_status(file.string(), error));
    return link ? Path(fs::weakly_canonical(file.string()).string()) : file;
}

std::uint64_t freeBytes(const Path& folder) {
    std::error_code error;
    const fs::space_info space = fs::space(folder.string(), error);
    return error ? std::numeric_limits<std::uint64_t>::max() : space.available;
}

bool makeFolders(const Path& folder) {
    std::error_code error;
    const bool made = fs::create_directories(folder.string(), error);
    check(folder, error);
    return made;
}

Path makeHiddenFile(const Path& folder, const std::string& like) {
    std::string name = hiddenName(folder, like);
    const int file = mkstemp(name.data());
    if (file < 0) throw failure(folder, errno);
    giveUsualPermissions(file);
    close(file);
    return name;
}

Path makeHiddenFolder(const Path& folder, const std::string& like) {
    std::string name = hiddenName(folder, like);
    if (mkdtemp(name.data()) == nullptr) throw failure(folder, errno);
    return name;
}

void move(const Path& from, const Path& to) {
    std::error_code error;
    fs::rename(from.string(), to.string(), error);
    check(to, error);
}

void removeFile(const Path& file) {
    std::error_code ignored;
    fs::remove(file.string(), ignored);
}

void removeTree(const Path& folder) {
    std::error_code ignored;
    fs::remove_all(folder.string(), ignored);
}

void removeEmptyFolder(const Path& folder) {
    removeFile(folder);
}

void synchronise(const Path& file) {
    const int opened = open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (opened < 0) throw failure(file, errno);
    const int error = fsync(opened) == 0 ? 0 : errno;
    close(opened);
    if (error != 0) throw failure(file, error);
}

FolderOnMedium::FolderOnMedium(const Path& folder)
    : folder_(folder), descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}

FolderOnMedium::~FolderOnMedium() {
    close(descriptor_);
}

// Once for all files: waiting for each takes a hundred times as long. The descriptor is older than the files,
// so that what went wrong with any of them is told.
void FolderOnMedium::synchronise() {
    if (syncfs(descriptor_) != 0) throw failure(folder_, errno);
}

std::string readText(const Path& file) {
    std::ifstream stream(file.string(), std::ios::binary);
    if (!stream) throw failure(file, errno);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const Path& file, const std::string& bytes) {
    std::ofstream stream(file.string(), std::ios::binary);
    if (!(stream << bytes).flush()) throw HostError(file, "not writable");
}

struct InputFile::Opened {
    int file;
    std::uint64_t size = 0;
};

InputFile::InputFile(const Path& file) : opened_(new Opened{open(file.c_str(), O_RDONLY | O_CLOEXEC)}) {
    struct stat facts {};
    if (opened_->file < 0 || fstat(opened_->file, &facts) != 0) {
        const int error = errno;
        close(opened_->file);
        throw failure(file, error);
    }
    opened_->size = static_cast<std::uint64_t>(facts.st_size);
}

InputFile::~InputFile() {
    close(opened_->file);
}

std::uint64_t InputFile::size() const {
    return opened_->size;
}

std::size_t InputFile::readAt(std::uint64_t offset, unsigned char* buffer, std::size_t count) const {
    const ssize_t got = pread(opened_->file, buffer, count, static_cast<off_t>(offset));
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

}  // namespace host_files

}  // namespace tools
