#include "tools/emergency_disk/fitness.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "boot_check.h"
#include "tools/emergency_disk/problems.h"

namespace tools::emergency_disk {

namespace {

using boot_sector::clusterCount;
using boot_sector::clusterEnd;
using boot_sector::firstCluster;

constexpr DWORD sectorSize = boot_sector::size;
constexpr DWORD entrySize = 32;
constexpr DWORD freeMark = 0;
constexpr DWORD badMark = 0xFF7;
// Marks used only by this program for freed clusters; no link has so many bits. A directory is open until all
// its entries are deleted.
constexpr DWORD released = 0x1000;
constexpr DWORD ofOpenDirectory = 0x1001;

using Bytes = std::vector<unsigned char>;

DWORD wordAt(const Bytes& bytes, std::size_t at) {
    return bytes[at] | DWORD{bytes[at + 1]} << 8;
}

DWORD sectorOf(DWORD cluster) {
    return boot_sector::dataStart + cluster - firstCluster;
}

// When a transfer of several sectors fails, reads one by one to find the bad sector.
Bytes read(DisketteView& diskette, DWORD first, DWORD count) {
    Bytes bytes(std::size_t{count} * sectorSize);
    const auto all = std::as_writable_bytes(std::span(bytes));
    if (diskette.readSectors(first, all) == NO_ERROR) return bytes;
    for (DWORD i = 0; i < count; ++i) {
        const auto sector = all.subspan(std::size_t{i} * sectorSize, sectorSize);
        if (const DWORD error = diskette.readSectors(first + i, sector)) {
            throw transferProblem(error, first + i);
        }
    }
    return bytes;
}

// The file allocation table, modified in memory only.
class Clusters {
public:
    explicit Clusters(const Bytes& fat) : links_(clusterEnd) {
        for (DWORD cluster = 0; cluster < clusterEnd; ++cluster) {
            const DWORD pair = wordAt(fat, cluster + cluster / 2);
            links_[cluster] = cluster % 2 == 0 ? pair & 0xFFF : pair >> 4;
        }
    }

    struct Chain {
        std::vector<DWORD> clusters;
        DWORD end;  // where its last link points
    };

    // Frees a chain as far as it is valid; it may be damaged in any way. `mark`: what its clusters become.
    Chain release(DWORD first, DWORD mark) {
        Chain chain{{}, first};
        while (chain.end >= firstCluster && chain.end < clusterEnd && !isFree(chain.end)) {
            chain.clusters.push_back(chain.end);
            chain.end = std::exchange(links_[chain.end], mark);
        }
        return chain;
    }
    void close(const Chain& chain) {
        for (const DWORD cluster : chain.clusters) links_[cluster] = released;
    }

    bool isBad(DWORD cluster) const { return links_[cluster] == badMark; }
    bool isFree(DWORD cluster) const { return links_[cluster] == freeMark || links_[cluster] >= released; }
    // Whether such a chain shares clusters with an open directory, or is a directory's and shares clusters
    // that another entry has freed: entries would be lost.
    bool losesDirectory(const Chain& chain, DWORD mark) const {
        const DWORD other = chain.end < clusterEnd ? links_[chain.end] : freeMark;
        return other == ofOpenDirectory || (other == released && mark == ofOpenDirectory);
    }
    std::vector<DWORD> free() const {
        std::vector<DWORD> clusters;
        for (DWORD cluster = firstCluster; cluster < clusterEnd; ++cluster) {
            if (isFree(cluster)) clusters.push_back(cluster);
        }
        return clusters;
    }
    std::size_t bad() const {
        return static_cast<std::size_t>(std::count(links_.begin() + firstCluster, links_.end(), badMark));
    }

private:
    std::vector<DWORD> links_;
};

// Characters outside ASCII depend on the code page and become "?".
std::string nameOf(const unsigned char* entry) {
    std::string name(entry, entry + boot_sector::directoryNameSize);
    for (char& letter : name) {
        if (letter < ' ' || letter > '~') letter = '?';
    }
    const auto part = [&](std::size_t at, std::size_t size) {
        const std::string padded = name.substr(at, size);
        return padded.substr(0, padded.find_last_not_of(' ') + 1);
    };
    const std::string extension = part(8, 3);
    return part(0, 8) + (extension.empty() ? "" : "." + extension);
}

[[noreturn]] void refuseShared(const unsigned char* entry, DWORD cluster) {
    throw Problem(ExitCode::refused, "the volume is damaged: cluster " + std::to_string(cluster) + " of " +
                                         nameOf(entry) + " belongs to another entry, too");
}

// Frees the clusters of a directory's entries. Result: the number of entries that deleting leaves behind:
// labels, and parts of long names without a file.
std::size_t eraseDirectory(DisketteView& diskette, Clusters& clusters, const Bytes& directory, bool isRoot) {
    constexpr DWORD labelBit = 0x08;
    std::size_t kept = 0;
    std::size_t longName = 0;  // parts of one, waiting for their file
    for (std::size_t at = 0; at < directory.size() && directory[at] != 0; at += entrySize) {
        const DWORD attributes = directory[at + 11];
        const bool deleted = directory[at] == 0xE5;
        const bool dots = !isRoot && directory[at] == '.';
        if (!deleted && (attributes & 0x3F) == 0x0F) {
            ++longName;
        } else if (deleted || (attributes & labelBit) != 0) {
            kept += std::exchange(longName, 0) + (deleted ? 0 : 1);
        } else if (!dots) {
            longName = 0;
            const DWORD mark = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? ofOpenDirectory : released;
            const Clusters::Chain chain = clusters.release(wordAt(directory, at + 26), mark);
            if (clusters.losesDirectory(chain, mark)) refuseShared(&directory[at], chain.end);
            if (mark == released) continue;
            Bytes below;
            for (const DWORD cluster : chain.clusters) {
                const Bytes sector = read(diskette, sectorOf(cluster), 1);
                below.insert(below.end(), sector.begin(), sector.end());
            }
            eraseDirectory(diskette, clusters, below, false);
            clusters.close(chain);
        }
    }
    return kept + longName;
}

void requireLayout(DisketteView& diskette) {
    DisketteView::Fats fats;
    if (const DWORD error = diskette.fats(fats)) throw transferProblem(error, 0);
    const Bytes sector = read(diskette, 0, 1);
    const boot_check::Finding finding =
        boot_check::CheckParameterBlock(std::span(sector).first<boot_sector::size>());
    if (!finding.passed) {
        std::string difference = finding.sentence.substr(0, finding.sentence.size() - 1);
        difference.front() = 't';  // "The ..."
        throw Problem(ExitCode::refused, "the diskette is formatted differently: " + difference);
    }
}

Clusters readFat(DisketteView& diskette) {
    using namespace boot_sector;
    const Bytes first = read(diskette, fatStart, fatSize);
    if (first != read(diskette, fatStart + fatSize, fatSize)) {
        throw Problem(ExitCode::refused, "the volume is damaged: its two file allocation tables differ");
    }
    return Clusters(first);
}

DWORD clustersOf(const PlannedFile& file) {
    return static_cast<DWORD>((file.contents.size() + sectorSize - 1) / sectorSize);
}

DWORD clustersOf(std::span<const PlannedFile> files) {
    return std::transform_reduce(files.begin(), files.end(), DWORD{0}, std::plus(),
                                 [](const PlannedFile& file) { return clustersOf(file); });
}

void requireRoom(const DiskPlan& plan, const Clusters& clusters, std::size_t keptEntries) {
    const std::size_t needed = clustersOf(plan);
    const std::size_t free = clusters.free().size();
    if (free < needed) {
        const std::size_t lost = clusterCount - free - clusters.bad();
        throw Problem(ExitCode::doesNotFit,
                      "the files need " + std::to_string(needed) + " clusters; of the diskette's " +
                          std::to_string(clusterCount) + ", " + std::to_string(clusters.bad()) +
                          " are marked as bad and " + std::to_string(lost) +
                          " are in use without belonging to a file");
    }
    if (boot_sector::rootEntries < keptEntries + plan.size() + 1) {  // and the label
        throw Problem(ExitCode::doesNotFit,
                      "the root directory has no room for the files, even when all others are deleted");
    }
}

// `places` are the free clusters, in the order in which the files use them.
void requireLoadersRun(const DiskPlan& plan, const Clusters& clusters, std::span<const DWORD> places) {
    const auto loader = std::find_if(plan.begin(), plan.end(),
                                     [](const PlannedFile& file) { return file.name == loaderName; });
    const auto run = places.subspan(clustersOf(std::span(plan.begin(), loader)), clustersOf(*loader));
    const auto gap =
        std::adjacent_find(run.begin(), run.end(), [](DWORD one, DWORD next) { return next != one + 1; });
    if (gap == run.end()) return;
    const DWORD taken = *gap + 1;
    const std::string where =
        "cluster " + std::to_string(taken) + ", where the loader has to lie in one piece, is ";
    if (clusters.isBad(taken)) throw Problem(ExitCode::mediumError, where + "marked as bad");
    throw Problem(ExitCode::refused,
                  "the volume is damaged: " + where + "in use without belonging to a file");
}

}  // namespace

void requireFit(DisketteView& diskette, const DiskPlan& plan) {
    requireLayout(diskette);
    Clusters clusters = readFat(diskette);
    const Bytes root = read(diskette, boot_sector::rootStart, boot_sector::rootSize);
    const std::size_t kept = eraseDirectory(diskette, clusters, root, true);
    requireRoom(plan, clusters, kept);
    requireLoadersRun(plan, clusters, clusters.free());
}

}  // namespace tools::emergency_disk
