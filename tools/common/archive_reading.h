#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "zar_check.h"

#include "tools/common/host_path.h"

namespace tools {

// Describes an archive without its records, with its first fault.
struct ArchiveSummary {
    std::uint64_t size = 0;  // bytes of the archive
    std::size_t count = 0;   // records
    bool oldLayout = false;
    std::optional<zar::Fault> fault;
};

struct ArchiveContents : ArchiveSummary {
    std::vector<zar::Entry> records;
};

using TakeRecord = std::function<void(const zar::Entry&)>;

// Throws Problem(failure) when there is no such file.
void requireArchive(const Path& archive);

// Walks an archive on the host without unpacking it and passes on each record. Throws Problem(failure) when
// it cannot be opened.
ArchiveSummary walkArchive(const Path& archive, const TakeRecord& take);

// Throws Problem(invalidArchive), with the offset and the reason, when there is a fault.
void refuseFaulty(const Path& archive, const ArchiveSummary& summary);

// Both require a sound archive: its contents, or the number of its records alone, which needs no memory per
// record.
ArchiveContents readSoundArchive(const Path& archive);
std::size_t countSoundArchive(const Path& archive);

// The data of one file. Throws Problem.
std::vector<unsigned char> readMember(const Path& archive, const zar::Entry& record);

}  // namespace tools
