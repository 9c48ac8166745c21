#include "disk_verification.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "boot_check.h"

namespace {

using namespace boot_sector;

constexpr DWORD chainEnd = 0xFF8;  // and above: the last cluster of a file

constexpr std::size_t entrySize = 32;
constexpr std::size_t attributesAt = 0x0B;
constexpr std::size_t firstClusterAt = 0x1A;
constexpr std::size_t fileSizeAt = 0x1C;
constexpr unsigned char labelBit = 0x08;  // a label, or part of a long name
constexpr std::size_t baseSize = 8;

DWORD wordAt(const unsigned char* bytes) {
    return bytes[0] | DWORD{bytes[1]} << 8;
}

// The name as stored in a directory entry: "IBMBIO  COM".
std::string directoryName(const std::string& name) {
    const std::size_t dot = std::min(name.find('.'), name.size());
    std::string entry = name.substr(0, dot);
    entry.resize(std::max(entry.size(), baseSize), ' ');
    entry += name.substr(std::min(dot + 1, name.size()));
    entry.resize(std::max(entry.size(), boot_sector::directoryNameSize), ' ');
    return entry;
}

// The first record of each name.
std::map<std::string, zar::Entry> recordsOf(const std::vector<std::string>& names, zar::Checker& archive) {
    std::map<std::string, zar::Entry> records;
    for (zar::Entry record; archive.Next(record);) {
        if (std::find(names.begin(), names.end(), record.name) != names.end()) {
            records.emplace(record.name, record);
        }
    }
    return records;
}

}  // namespace

DiskVerification::DiskVerification(ReadSectors read, GoOn goOn)
    : read_(std::move(read)),
      goOn_(std::move(goOn)),
      fat_(fatSize * boot_sector::size),
      root_(rootSize * boot_sector::size) {}

bool DiskVerification::Passes(const std::vector<std::string>& files, zar::Checker& archive) {
    try {
        const auto records = recordsOf(files, archive);
        if (!Starts() || !FatsAgree()) {
            return false;
        }
        for (std::size_t i = 0; i < files.size(); ++i) {
            Report(i + 1, files.size() + 1);
            const auto record = records.find(files[i]);
            const bool sound = record != records.end() ? Holds(files[i], archive, record->second)
                                                       : !archive.FirstFault().has_value();
            if (!sound) {
                return false;
            }
        }
        Report(1, 1);
        return true;
    } catch (const Ended&) {
        return false;
    }
}

bool DiskVerification::Starts() {
    return boot_check::CheckDiskette(
               [this](DWORD number, Sector sector) { return ReadSector(number, sector); })
        .passed();
}

// Also keeps the first FAT and the root directory for the following steps.
bool DiskVerification::FatsAgree() {
    std::vector<unsigned char> second(fat_.size());
    return ReadRun(fatStart, fat_) && ReadRun(fatStart + fatSize, second) && fat_ == second &&
           ReadRun(rootStart, root_);
}

bool DiskVerification::Holds(const std::string& name, zar::Checker& archive, const zar::Entry& record) {
    const auto file = Find(name);
    if (!file || file->size != record.size) {
        return false;
    }
    DWORD cluster = file->size == 0 ? chainEnd : file->firstCluster;
    std::array<unsigned char, boot_sector::size> content{};
    std::size_t done = 0;
    const auto compare = [&](const unsigned char* data, std::size_t count) {
        while (count != 0) {
            const std::size_t at = done % content.size();
            if (at == 0) {
                if (!ReadCluster(cluster, content)) {
                    return false;
                }
                cluster = NextCluster(cluster);
            }
            const std::size_t piece = std::min(count, content.size() - at);
            if (std::memcmp(&content[at], data, piece) != 0) {
                return false;
            }
            data += piece;
            count -= piece;
            done += piece;
        }
        return true;
    };
    return archive.ReadData(record, compare) && cluster >= chainEnd;
}

std::optional<DiskVerification::File> DiskVerification::Find(const std::string& name) {
    const std::string wanted = directoryName(name);
    for (std::size_t at = 0; at < root_.size() && root_[at] != 0; at += entrySize) {
        const unsigned char* const entry = &root_[at];
        const bool isFile = (entry[attributesAt] & labelBit) == 0;
        if (isFile && wanted.size() == boot_sector::directoryNameSize &&
            std::memcmp(entry, wanted.data(), wanted.size()) == 0) {
            return File{wordAt(entry + firstClusterAt), zar::LoadField(entry + fileSizeAt)};
        }
    }
    return std::nullopt;
}

bool DiskVerification::ReadCluster(DWORD cluster, Sector content) {
    return cluster >= firstCluster && cluster < clusterEnd &&
           ReadSector(dataStart + cluster - firstCluster, content);
}

DWORD DiskVerification::NextCluster(DWORD cluster) const {
    const DWORD both = wordAt(&fat_[cluster + cluster / 2]);
    return cluster % 2 == 0 ? both & 0xFFF : both >> 4;
}

bool DiskVerification::ReadRun(DWORD first, std::span<unsigned char> sectors) {
    for (; !sectors.empty(); ++first, sectors = sectors.subspan(boot_sector::size)) {
        if (!ReadSector(first, sectors.first<boot_sector::size>())) {
            return false;
        }
    }
    return true;
}

bool DiskVerification::ReadSector(DWORD number, Sector sector) {
    const Track& track = ReadTrack(number / sectorsPerTrack);
    const DWORD place = number % sectorsPerTrack;
    std::memcpy(sector.data(), &track.bytes[place * boot_sector::size], boot_sector::size);
    return track.readable[place];
}

// Reads a whole track at once: one revolution per sector would take minutes. If that fails, reads sector by
// sector, because the bad one may be unused.
const DiskVerification::Track& DiskVerification::ReadTrack(unsigned track) {
    if (const auto known = tracks_.find(track); known != tracks_.end()) {
        return known->second;
    }
    GoOnOrEnd();
    Track& read = tracks_[track];
    const DWORD first = track * sectorsPerTrack;
    const auto bytes = std::as_writable_bytes(std::span(read.bytes));
    read.readable.fill(read_(first, bytes));
    if (!read.readable[0]) {
        for (DWORD i = 0; i < sectorsPerTrack; ++i) {
            read.readable[i] = read_(first + i, bytes.subspan(i * boot_sector::size, boot_sector::size));
        }
    }
    return read;
}

void DiskVerification::Report(std::size_t steps, std::size_t of) {
    percent_ = static_cast<int>(100 * steps / of);
    GoOnOrEnd();
}

void DiskVerification::GoOnOrEnd() const {
    if (!goOn_(percent_)) {
        throw Ended{};
    }
}
