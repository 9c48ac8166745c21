#include "tools/common/archive_reading.h"

#include "tools/common/exit_code.h"
#include "tools/common/host_files.h"

namespace tools {

namespace {

Problem unreadable(const Path& archive, const std::string& why) {
    return {ExitCode::failure, "cannot read the archive " + archive.string() + ": " + why};
}

// An open archive on the host.
class ArchiveFile {
public:
    explicit ArchiveFile(const Path& archive) {
        requireArchive(archive);  // opening a pipe could block for ever
        try {
            file_.emplace(archive);
        } catch (const HostError& error) {
            throw unreadable(archive, error.reason());
        }
    }

    std::uint64_t size() const { return file_->size(); }

    zar::Checker checker() const {
        const auto readAt = [this](std::uint64_t offset, unsigned char* buffer, std::size_t count) {
            return file_->readAt(offset, buffer, count);
        };
        return {readAt, size()};
    }

private:
    std::optional<host_files::InputFile> file_;
};

}  // namespace

void requireArchive(const Path& archive) {
    std::string why;
    const host_files::Kind kind = host_files::kindOf(archive, &why);
    if (kind == host_files::Kind::file) return;
    throw unreadable(archive, kind == host_files::Kind::missing ? why : "it is not a file");
}

ArchiveSummary walkArchive(const Path& archive, const TakeRecord& take) {
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

void refuseFaulty(const Path& archive, const ArchiveSummary& summary) {
    if (!summary.fault) return;
    throw Problem(ExitCode::invalidArchive, archive.string() + ": at offset " +
                                                std::to_string(summary.fault->offset) + ": " +
                                                summary.fault->reason);
}

ArchiveContents readSoundArchive(const Path& archive) {
    ArchiveContents contents;
    const auto keep = [&](const zar::Entry& record) { contents.records.push_back(record); };
    static_cast<ArchiveSummary&>(contents) = walkArchive(archive, keep);
    refuseFaulty(archive, contents);
    return contents;
}

std::size_t countSoundArchive(const Path& archive) {
    const ArchiveSummary summary = walkArchive(archive, [](const zar::Entry&) {});
    refuseFaulty(archive, summary);
    return summary.count;
}

std::vector<unsigned char> readMember(const Path& archive, const zar::Entry& record) {
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
