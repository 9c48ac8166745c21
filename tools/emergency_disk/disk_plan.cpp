#include "tools/emergency_disk/disk_plan.h"

#include <algorithm>

#include "boot_check.h"
#include "boot_files.h"
#include "boot_sector.h"
#include "tools/common/archive_reading.h"
#include "tools/common/exit_code.h"
#include "tools/common/names.h"

namespace tools::emergency_disk {

namespace {

Problem invalid(const Path& archive, const std::string& what) {
    return {ExitCode::invalidArchive, archive.string() + ": " + what};
}

// The first record with that name, which the extractor takes.
const ::zar::Entry& find(const Path& archive, const ArchiveContents& contents, const std::string& name) {
    const auto found = std::find_if(contents.records.begin(), contents.records.end(),
                                    [&](const ::zar::Entry& record) { return record.name == name; });
    if (found == contents.records.end()) throw invalid(archive, "the file " + name + " is missing");
    return *found;
}

// Warns of names that are the same to Windows: the extractor stops at the first match.
void warnOfNamesakes(const Path& archive, const ArchiveContents& contents, const std::string& name,
                     const Warn& warn) {
    const auto count =
        std::count_if(contents.records.begin(), contents.records.end(), [&](const auto& record) {
            return record.name.size() == name.size() && upperCase(utf8(record.name)) == name;
        });
    if (!warn || count < 2) return;
    warn(archive.string() + " holds " + name + " " + std::to_string(count) +
         " times; the first that is spelled so goes to the diskette");
}

void checkLoader(const Path& archive, const PlannedFile& loader) {
    const boot_check::Report report = boot_check::CheckLoader(loader.contents);
    for (const boot_check::Finding& finding : report.findings) {
        if (!finding.passed) throw invalid(archive, std::string(loaderName) + ": " + finding.sentence);
    }
}

// Called before any contents are read, so that an archive of any size is refused at once.
void checkSpace(const Path& archive, const std::vector<const ::zar::Entry*>& records) {
    std::uint64_t clusters = 0;
    for (const ::zar::Entry* record : records) {
        clusters += (record->size + boot_sector::size - 1) / boot_sector::size;
    }
    if (clusters > boot_sector::clusterCount) {
        throw Problem(ExitCode::doesNotFit, archive.string() + ": the files need " +
                                                std::to_string(clusters) + " clusters; a diskette has " +
                                                std::to_string(boot_sector::clusterCount));
    }
    const std::size_t entries = records.size() + 1;  // and the label
    if (entries > boot_sector::rootEntries) {
        throw Problem(ExitCode::doesNotFit, archive.string() + ": too many files for the root directory");
    }
}

}  // namespace

DiskPlan readPlan(const Path& archive, const Warn& warn) {
    const ArchiveContents contents = readSoundArchive(archive);
    std::vector<const ::zar::Entry*> records;
    for (const BootFile& file : bootFiles) {
        records.push_back(&find(archive, contents, file.name));
        warnOfNamesakes(archive, contents, file.name, warn);
    }
    checkSpace(archive, records);
    DiskPlan plan;
    for (std::size_t i = 0; i < bootFiles.size(); ++i) {
        plan.push_back({bootFiles[i].name, bootFiles[i].attributes, readMember(archive, *records[i])});
        if (plan.back().name == loaderName) checkLoader(archive, plan.back());
    }
    return plan;
}

}  // namespace tools::emergency_disk
