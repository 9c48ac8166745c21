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

ArchiveSummary walkArchive(const std::filesystem::path& archive, const TakeRecord& take) {
    const ArchiveFile file(archive);
    zar::Checker checker = file.checker();
    ArchiveSummary summary;
    summary.size = file.size();
    for (zar::Entry entry; checker.Next(entry); ++summary.count) {
        summary.oldLayout = entry.oldLayout;
        take(entry);
    }
    summary.fault = checker.FirstFault();
    return summary;
}

void refuseFaulty(const std::filesystem::path& archive, const ArchiveSummary& summary) {
    if (!summary.fault) return;
    throw Problem(ExitCode::invalidArchive, archive.string() + ": at offset " +
                                                std::to_string(summary.fault->offset) + ": " +
                                                summary.fault->reason);
}

ArchiveContents readSoundArchive(const std::filesystem::path& archive) {
    ArchiveContents contents;
    const auto keep = [&](const zar::Entry& record) { contents.records.push_back(record); };
    static_cast<ArchiveSummary&>(contents) = walkArchive(archive, keep);
    refuseFaulty(archive, contents);
    return contents;
}

std::size_t countSoundArchive(const std::filesystem::path& archive) {
    const ArchiveSummary summary = walkArchive(archive, [](const zar::Entry&) {});
    refuseFaulty(archive, summary);
    return summary.count;
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
