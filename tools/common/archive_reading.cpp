#include "tools/common/archive_reading.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "tools/common/exit_code.h"

namespace tools {

namespace {

Problem unreadable(const std::filesystem::path& archive, const std::string& why) {
    return {ExitCode::failure, "cannot read the archive " + archive.string() + ": " + why};
}

// An archive that is open on the host.
class ArchiveFile {
public:
    explicit ArchiveFile(const std::filesystem::path& archive) {
        requireArchive(archive);  // opening a pipe could wait for ever
        file_ = open(archive.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat facts {};
        if (file_ < 0 || fstat(file_, &facts) != 0) {
            throw unreadable(archive, std::generic_category().message(errno));
        }
        size_ = static_cast<std::uint64_t>(facts.st_size);
    }
    ~ArchiveFile() { close(file_); }
    ArchiveFile(const ArchiveFile&) = delete;
    ArchiveFile& operator=(const ArchiveFile&) = delete;

    std::uint64_t size() const { return size_; }

    zar::Checker checker() const {
        const auto readAt = [this](std::uint64_t offset, unsigned char* buffer, std::size_t count) {
            const ssize_t got = pread(file_, buffer, count, static_cast<off_t>(offset));
            return got > 0 ? static_cast<std::size_t>(got) : 0;
        };
        return {readAt, size_};
    }

private:
    int file_ = -1;
    std::uint64_t size_ = 0;
};

}  // namespace

void requireArchive(const std::filesystem::path& archive) {
    std::error_code error;
    const auto status = std::filesystem::status(archive, error);
    if (std::filesystem::is_regular_file(status)) return;
    throw unreadable(archive, std::filesystem::exists(status) ? "it is not a file" : error.message());
}

ArchiveContents readArchive(const std::filesystem::path& archive) {
    const ArchiveFile file(archive);
    zar::Checker checker = file.checker();
    ArchiveContents contents;
    contents.size = file.size();
    for (zar::Entry entry; checker.Next(entry);) contents.records.push_back(entry);
    contents.fault = checker.FirstFault();
    return contents;
}

void refuseFaulty(const std::filesystem::path& archive, const ArchiveContents& contents) {
    if (!contents.fault) return;
    throw Problem(ExitCode::invalidArchive, archive.string() + ": at offset " +
                                                std::to_string(contents.fault->offset) + ": " +
                                                contents.fault->reason);
}

ArchiveContents readSoundArchive(const std::filesystem::path& archive) {
    ArchiveContents contents = readArchive(archive);
    refuseFaulty(archive, contents);
    return contents;
}

std::vector<unsigned char> readMember(const std::filesystem::path& archive, const zar::Entry& record) {
    const ArchiveFile file(archive);
    zar::Checker checker = file.checker();
    std::vector<unsigned char> contents;
    contents.reserve(record.size);
    const bool whole = checker.ReadData(record, [&](const unsigned char* data, std::size_t count) {
        contents.insert(contents.end(), data, data + count);
        return true;
    });
    if (!whole) throw Problem(ExitCode::failure, "cannot read " + record.name + " from " + archive.string());
    return contents;
}

}  // namespace tools
