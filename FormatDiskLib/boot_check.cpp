#include "boot_check.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace boot_check {
namespace {

using namespace boot_sector;

constexpr std::size_t entrySize = 32;
constexpr std::size_t firstClusterAt = 0x1A;
constexpr std::size_t fileSizeAt = 0x1C;
constexpr std::size_t markAt = 0x1FE;
constexpr std::size_t headAt = 0x200;
constexpr std::size_t blocksAt = 0x204;
constexpr DWORD largestLoader = 127 * size;  // the boot code uses only bits 9 to 15 of the size

struct Parameter {
    std::size_t at;
    std::size_t bytes;
    const char* what;
};
constexpr Parameter parameters[] = {
    {bytesPerSectorAt, 2, "number of bytes per sector"},
    {sectorsPerClusterAt, 1, "number of sectors per cluster"},
    {reservedSectorsAt, 2, "number of reserved sectors"},
    {fatCountAt, 1, "number of FATs"},
    {rootEntriesAt, 2, "number of root directory entries"},
    {totalSectorsAt, 2, "number of sectors"},
    {mediaDescriptorAt, 1, "media descriptor"},
    {sectorsPerFatAt, 2, "number of sectors per FAT"},
    {sectorsPerTrackAt, 2, "number of sectors per track"},
    {headsAt, 2, "number of heads"},
};

// Memory from 8000h as the boot code sees it: the root directory, then the loader over it, zeros elsewhere.
constexpr std::size_t memorySize = 0x200 + 255 * size;
static_assert(memorySize > 0x10000);
using Memory = std::vector<unsigned char>;

WORD wordAt(std::span<const unsigned char> bytes, std::size_t offset) {
    return static_cast<WORD>(bytes[offset] | bytes[offset + 1] << 8);
}

DWORD longAt(std::span<const unsigned char> bytes, std::size_t offset) {
    return wordAt(bytes, offset) | static_cast<DWORD>(wordAt(bytes, offset + 2)) << 16;
}

std::string hex(DWORD value, int digits) {
    std::string text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text += "0123456789ABCDEF"[(value >> shift) & 0xF];
    }
    return text;
}

std::string number(DWORD value) {
    return std::to_string(value);
}

// Collects the findings; each call returns whether the check passed.
class Findings {
public:
    explicit Findings(std::vector<Finding>& list) : list_(list) {}

    bool add(const char* name, bool passed, std::string good, std::string bad) {
        list_.push_back({name, passed, passed ? std::move(good) : std::move(bad), !passed && unreadable_});
        unreadable_ = false;
        return passed;
    }
    // The next finding is about a sector that could not be read.
    void noteUnreadable() { unreadable_ = true; }

private:
    std::vector<Finding>& list_;
    bool unreadable_ = false;
};

// Makes the boot code's checks, in its order, on a loader of `sectors` sectors at the start of `memory`.
// Result: whether the boot code would enter the loader.
bool checkContent(std::span<const unsigned char> memory, std::size_t sectors, Findings& findings) {
    if (!findings.add("loader-mark", wordAt(memory, markAt) == 0xAA55,
                      "The loader's first sector ends with the mark 55 AA.",
                      "The loader's first sector does not end with the mark 55 AA.") ||
        !findings.add("loader-signature", std::memcmp(&memory[headAt], "QZOR", 4) == 0,
                      "The loader's second sector begins with QZOR.",
                      "The loader's second sector does not begin with QZOR.")) {
        return false;
    }
    const std::size_t blocks = memory[blocksAt];
    findings.add(
        "loader-blocks", blocks > 0 && blocks < sectors,
        "The checksum covers " + std::to_string(blocks) + " of the loader's sectors.",
        "The number of sectors that the loader's checksum is to cover is " + std::to_string(blocks) + "; " +
            (sectors > 1 ? "from 1 to " + std::to_string(sectors - 1) + " can be." : "none can be."));
    WORD sum = 0;
    for (std::size_t offset = headAt; offset < headAt + blocks * size; offset += 2) {
        sum = static_cast<WORD>(sum + wordAt(memory, offset));
    }
    return findings.add("loader-checksum", sum == 0x5555, "The loader's checksum is 5555h, as it must be.",
                        "The loader's checksum is " + hex(sum, 4) + "h instead of 5555h.");
}

bool checkLength(DWORD bytes, Findings& findings) {
    return findings.add(
        "loader-size", bytes % size == 0 && bytes >= 2 * size && bytes <= largestLoader,
        "The loader is " + number(bytes) + " bytes long, which are whole sectors below 64 KB.",
        "The loader is " + number(bytes) + " bytes long; it must be a multiple of 512, from 1024 to 65024.");
}

// Checks one diskette. Uses the boot code's 16-bit arithmetic, so that the result is the same even if the
// parameter block is damaged.
class Walk {
public:
    Walk(const SectorReader& read, Report& report)
        : read_(read), report_(report), findings_(report.findings), memory_(memorySize) {}

    void run() {
        if (!checkBootSector()) {
            return;
        }
        const auto entry = findLoader();
        if (!entry) {
            return;
        }
        const WORD cluster = wordAt(*entry, firstClusterAt);
        const DWORD bytes = longAt(*entry, fileSizeAt);
        checkLength(bytes, findings_);
        checkFirstCluster(cluster);
        checkChain(cluster, bytes);
        report_.loaderStarts = readLoader(*entry) && bootable_;
    }

private:
    bool readSector(DWORD sectorNumber, unsigned char* target) {
        if (sectorNumber >= totalSectors) {
            return false;
        }
        const bool read = read_(sectorNumber, Sector(target, size));
        if (!read) {
            findings_.noteUnreadable();
        }
        return read;
    }

    // Converts a sector number to a physical position as the boot code and the BIOS do.
    bool readByGeometry(WORD sectorNumber, unsigned char* target) {
        const unsigned perTrack = wordAt(boot_, sectorsPerTrackAt);
        const unsigned headCount = wordAt(boot_, headsAt);
        if (perTrack == 0 || headCount == 0) {
            return false;
        }
        const unsigned track = sectorNumber / perTrack;
        const unsigned cylinder = track / headCount & 0x3FF;
        const unsigned head = track % headCount & 0xFF;
        // A sector number of 64 or more overflows into the cylinder's upper bits.
        const unsigned low = (sectorNumber % perTrack + 1) & 0xFF;
        const unsigned sector = low & 0x3F;
        const unsigned askedCylinder = cylinder | (low & 0xC0) << 2;
        if (askedCylinder >= cylinders || head >= heads || sector == 0 || sector > sectorsPerTrack) {
            return false;
        }
        return readSector((askedCylinder * heads + head) * sectorsPerTrack + sector - 1, target);
    }

    // Reads to the start of the memory; a failure leaves the sector number in failed_.
    bool readRun(WORD first, unsigned char count) {
        WORD offset = 0;
        for (unsigned i = 0; i < count; ++i, offset = static_cast<WORD>(offset + size)) {
            failed_ = static_cast<WORD>(first + i);
            if (!readByGeometry(failed_, &memory_[offset])) {
                return false;
            }
        }
        return true;
    }

    bool checkBootSector() {
        if (!findings_.add("boot-sector", readSector(0, boot_.data()), "The boot sector can be read.",
                           "The boot sector cannot be read.")) {
            return false;
        }
        bootable_ = findings_.add("signature", wordAt(boot_, signatureAt) == 0xAA55,
                                  "The boot sector ends with the signature 55 AA.",
                                  "The boot sector does not end with the signature 55 AA, without which a "
                                  "computer does not start it.");
        const Image model = boot_sector::Build(longAt(boot_, serialNumberAt));
        const bool jumps = findings_.add("jump", equals(model, jumpAt, oemNameAt),
                                         "The boot sector begins with the jump to the boot code.",
                                         "The boot sector does not begin with the jump to the boot code.");
        report_.findings.push_back(CheckParameterBlock(boot_));
        return findings_.add("boot-code", equals(model, templateAt, signatureAt),
                             "The boot code is that of the emergency diskette.",
                             "The boot code is not that of the emergency diskette.") &&
               jumps;
    }

    bool equals(const Image& model, std::size_t from, std::size_t to) const {
        return std::equal(boot_.begin() + static_cast<std::ptrdiff_t>(from),
                          boot_.begin() + static_cast<std::ptrdiff_t>(to),
                          model.begin() + static_cast<std::ptrdiff_t>(from));
    }

    std::optional<std::array<unsigned char, entrySize>> findLoader() {
        const WORD rootSectors = wordAt(boot_, rootEntriesAt) / 16;
        const auto firstRoot = static_cast<WORD>(boot_[fatCountAt] * wordAt(boot_, sectorsPerFatAt) +
                                                 wordAt(boot_, reservedSectorsAt));
        firstData_ = static_cast<WORD>(firstRoot + rootSectors);
        const bool readable = readRun(firstRoot, static_cast<unsigned char>(rootSectors));
        if (!findings_.add("root-directory", readable, "The root directory can be read.",
                           "Sector " + number(failed_) + " of the root directory cannot be read.")) {
            return std::nullopt;
        }
        const auto entry = searchRoot();
        findings_.add("loader-entry", entry.has_value(), "The root directory names QZLOADER.BIN.",
                      "The root directory does not name QZLOADER.BIN.");
        return entry;
    }

    // Skips empty files (first cluster 0); the first free entry ends the directory.
    std::optional<std::array<unsigned char, entrySize>> searchRoot() const {
        const std::size_t entries = std::min<std::size_t>(wordAt(boot_, rootEntriesAt), 0x8000 / entrySize);
        for (std::size_t i = 0; i < entries; ++i) {
            const auto entry = std::span(memory_).subspan(i * entrySize).first<entrySize>();
            if (entry[0] == 0) {
                break;
            }
            if (std::equal(entry.begin(), entry.begin() + directoryNameSize, boot_.begin() + loaderNameAt) &&
                wordAt(entry, firstClusterAt) != 0) {
                std::array<unsigned char, entrySize> found{};
                std::copy(entry.begin(), entry.end(), found.begin());
                return found;
            }
        }
        return std::nullopt;
    }

    void checkFirstCluster(WORD cluster) {
        findings_.add("loader-cluster", cluster >= 2 && cluster < clusterEnd(),
                      "The loader begins in cluster " + number(cluster) + ".",
                      "The loader is said to begin in cluster " + number(cluster) +
                          ", which the diskette does not have.");
    }

    // Result: whether the boot code would enter the loader.
    bool readLoader(std::span<const unsigned char> entry) {
        const WORD cluster = wordAt(entry, firstClusterAt);
        const auto first =
            static_cast<WORD>((cluster - 2) * boot_[sectorsPerClusterAt] + static_cast<int>(firstData_));
        const auto sectors = static_cast<unsigned char>(entry[fileSizeAt + 1] / 2);
        return findings_.add("loader-readable", readRun(first, sectors),
                             "All sectors of the loader can be read.",
                             "Sector " + number(failed_) + ", where the loader should be, cannot be read.") &&
               checkContent(memory_, sectors, findings_);
    }

    // One past the last cluster of the diskette.
    DWORD clusterEnd() const {
        const unsigned perCluster = boot_[sectorsPerClusterAt];
        return perCluster == 0 || firstData_ >= totalSectors ? 2
                                                             : 2 + (totalSectors - firstData_) / perCluster;
    }

    // A 12-bit entry of the first FAT; empty if it cannot be read.
    std::optional<WORD> fatEntry(DWORD cluster) {
        const DWORD byte = cluster + cluster / 2;
        const auto sectorNumber = static_cast<DWORD>(wordAt(boot_, reservedSectorsAt) + byte / size);
        std::array<unsigned char, 2 * size> pair{};
        if (!readSector(sectorNumber, pair.data()) ||
            (byte % size == size - 1 && !readSector(sectorNumber + 1, &pair[size]))) {
            return std::nullopt;
        }
        const WORD both = wordAt(pair, byte % size);
        return static_cast<WORD>(cluster % 2 == 0 ? both & 0xFFF : both >> 4);
    }

    // The boot code assumes that the file is contiguous; the FAT must agree.
    void checkChain(DWORD first, DWORD bytes) {
        const DWORD perCluster = static_cast<DWORD>(boot_[sectorsPerClusterAt] * size);
        if (perCluster == 0) {
            return;  // the parameter block's finding reports it
        }
        const DWORD clusters = bytes / perCluster + (bytes % perCluster != 0 ? 1 : 0);
        DWORD cluster = first;
        std::string bad;
        for (DWORD i = 1; i <= clusters && bad.empty(); ++i, ++cluster) {
            bad = chainFault(cluster, i == clusters);
        }
        findings_.add("loader-run", bad.empty() && clusters > 0,
                      "The loader lies on the diskette in one piece.",
                      bad.empty() ? "The loader is empty." : bad);
    }

    // The fault of the FAT entry of `cluster`, which must end the chain or point to the next cluster.
    std::string chainFault(DWORD cluster, bool last) {
        if (cluster < 2 || cluster >= clusterEnd()) {
            return "The loader's clusters run past the end of the diskette.";
        }
        const auto link = fatEntry(cluster);
        if (!link) {
            return "The FAT's entry of cluster " + number(cluster) + " cannot be read.";
        }
        if (*link < 2 || (*link >= clusterEnd() && *link < 0xFF8)) {
            return "The loader's chain of clusters breaks off at cluster " + number(cluster) + ".";
        }
        if (last) {
            return *link >= 0xFF8 ? "" : "The loader's chain of clusters is longer than its size.";
        }
        if (*link >= 0xFF8) {
            return "The loader's chain of clusters is shorter than its size.";
        }
        return *link == cluster + 1
                   ? ""
                   : "The loader lies in pieces: cluster " + number(*link) + " follows cluster " +
                         number(cluster) + ", and the boot code reads straight on.";
    }

    const SectorReader& read_;
    Report& report_;
    Findings findings_;
    Memory memory_;
    Image boot_{};
    WORD firstData_ = 0;
    WORD failed_ = 0;
    bool bootable_ = false;
};

}  // namespace

bool Report::passed() const {
    return !findings.empty() &&
           std::all_of(findings.begin(), findings.end(), [](const Finding& f) { return f.passed; });
}

Finding CheckParameterBlock(std::span<const unsigned char, size> bootSector) {
    const Image model = boot_sector::Build(0);
    for (const Parameter& parameter : parameters) {
        const auto value = [&](std::span<const unsigned char> sector) {
            return parameter.bytes == 1 ? DWORD{sector[parameter.at]} : DWORD{wordAt(sector, parameter.at)};
        };
        if (value(bootSector) != value(model)) {
            return {"parameter-block", false,
                    "The parameter block's " + std::string(parameter.what) + " is " +
                        number(value(bootSector)) + "; a 1.44 MB diskette's is " + number(value(model)) +
                        "."};
        }
    }
    return {"parameter-block", true, "The parameter block is that of a 1.44 MB diskette."};
}

Report CheckDiskette(const SectorReader& read) {
    Report report;
    Walk(read, report).run();
    return report;
}

Report CheckLoader(std::span<const unsigned char> file) {
    Report report;
    Findings findings(report.findings);
    checkLength(static_cast<DWORD>(std::min<std::size_t>(file.size(), 0xFFFFFFFF)), findings);
    const std::size_t sectors = file.size() / size % 128;
    Memory memory(memorySize);
    std::copy(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(sectors * size), memory.begin());
    report.loaderStarts = checkContent(memory, sectors, findings);
    return report;
}

}  // namespace boot_check
