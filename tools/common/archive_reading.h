#pragma once
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "zar_check.h"

namespace tools {

// What an archive holds, and the first thing that is wrong with it.
struct ArchiveContents {
    std::uint64_t size = 0;  // bytes of the archive
    std::vector<zar::Entry> records;
    std::optional<zar::Fault> fault;
};

// Throws Problem(failure) when there is no file of that name.
void requireArchive(const std::filesystem::path& archive);

// Walks an archive on the host without unpacking it. Throws Problem(failure) when it cannot be opened.
ArchiveContents readArchive(const std::filesystem::path& archive);

// Throws Problem(invalidArchive) that names the offset and the reason when there is a fault.
void refuseFaulty(const std::filesystem::path& archive, const ArchiveContents& contents);

// Both: the contents of an archive that must be sound.
ArchiveContents readSoundArchive(const std::filesystem::path& archive);

// One file's data. Throws Problem.
std::vector<unsigned char> readMember(const std::filesystem::path& archive, const zar::Entry& record);

}  // namespace tools
