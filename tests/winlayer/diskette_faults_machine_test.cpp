// Media that fail at one sector, each of them in turn: a call that reports success has done its work,
// whatever the sector.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/diskette_files.h"
#include "support/diskette_machine.h"
#include "support/random_volume.h"

using winlayer::DisketteDrive;
using winlayer::SectorFault;

namespace {

constexpr DWORD done = NO_ERROR;
constexpr std::size_t newFile = 30 * 512 + 100;
constexpr DWORD firstDataSector = 33;

std::string pattern(std::size_t bytes, unsigned seed) {
    std::string text(bytes, '\0');
    for (std::size_t i = 0; i < bytes; ++i) {
        text[i] = static_cast<char>((i * 7 + i / 512 + seed) & 0xFF);
    }
    return text;
}

// A diskette with files to keep, to change and to remove, and room for one large file: its bytes once, for
// all runs.
const std::vector<std::byte>& startImage() {
    static const std::vector<std::byte> image = [] {
        DisketteMachine diskette;
        DisketteDrive& drive = diskette.drive();
        EXPECT_EQ(writeWhole(drive, "KEPT", pattern(3000, 1)), done);
        EXPECT_EQ(writeWhole(drive, "REMOVED", pattern(40'000, 2)), done);
        EXPECT_EQ(drive.createDirectory("D"), done);
        EXPECT_EQ(writeWhole(drive, "D\\CHANGED", pattern(2000, 3)), done);
        return std::vector<std::byte>(diskette.image().begin(), diskette.image().end());
    }();
    return image;
}

// What the calls of one run said: what must then be true of the diskette.
struct Outcome {
    DWORD removed = 0;
    DWORD changed = 0;
    DWORD made = 0;
    DWORD label = 0;
    std::size_t written = 0;  // bytes of NEW whose writing was reported as done
    bool failed = false;      // a call said so
};

Outcome work(DisketteDrive& drive) {
    Outcome outcome;
    const auto note = [&](DWORD error) {
        outcome.failed = outcome.failed || error != done;
        return error;
    };
    outcome.changed = note(drive.setAttributes("D\\CHANGED", FILE_ATTRIBUTE_HIDDEN));
    outcome.label = note(drive.setLabel("LABEL"));
    outcome.made = note(drive.createDirectory("D\\E"));
    const TestFile file = openFile(drive, "NEW", CREATE_NEW);
    const std::string content = pattern(newFile, 4);
    for (std::size_t half = 0; half < 2 && note(file.error) == done; ++half) {
        const std::string part = content.substr(outcome.written, half == 0 ? 8094 : content.size());
        if (note(file->write(outcome.written, bytesOf(part)).error) != done) {
            break;
        }
        outcome.written += part.size();
    }
    outcome.removed = note(drive.removeFile("REMOVED"));  // last, as its clusters would be taken first
    return outcome;
}

// Empty when the diskette is as the outcome says; otherwise what is not.
std::string check(DisketteDrive& drive, const Outcome& outcome) {
    const auto attributesOf = [&](const std::string& path) {
        winlayer::FileFacts facts;
        return drive.facts(path, facts) == done ? facts.attributes : 0;
    };
    winlayer::VolumeFacts volume;
    std::string wrong;
    const auto expect = [&](bool right, const char* what) { wrong += right ? "" : std::string(what) + "; "; };
    expect(contentOf(drive, "KEPT") == pattern(3000, 1), "KEPT is lost");
    expect(contentOf(drive, "D\\CHANGED") == pattern(2000, 3), "CHANGED is lost");
    expect((attributesOf("D\\CHANGED") == FILE_ATTRIBUTE_HIDDEN) == (outcome.changed == done), "attributes");
    expect((attributesOf("D\\E") == FILE_ATTRIBUTE_DIRECTORY) == (outcome.made == done), "directory");
    expect(outcome.made != done || namesIn(drive, "D\\E").size() == 2, "directory's own entries");
    expect(drive.volume(volume) == done && (volume.label == "LABEL") == (outcome.label == done), "label");
    if (outcome.removed == done) {
        expect(attributesOf("REMOVED") == 0, "REMOVED is there");
    } else {
        expect(contentOf(drive, "REMOVED") == pattern(40'000, 2), "REMOVED is damaged");
    }
    const std::string content = contentOf(drive, "NEW");
    expect(content.compare(0, outcome.written, pattern(outcome.written, 4)) == 0, "NEW is damaged");
    return wrong;
}

struct Loaded {
    std::shared_ptr<DisketteDrive> drive;
    winlayer::MemoryStore* medium;
};

// Makes all clusters but those of 45 sectors unusable, so that what is written goes there.
void narrow(std::span<std::byte> image, DWORD firstSector) {
    for (DWORD cluster = 2; cluster < 2849; ++cluster) {
        const DWORD sector = firstDataSector + cluster - 2;
        const std::size_t at = 512 + cluster * 3 / 2;
        const bool odd = cluster % 2 != 0;
        const unsigned pair = std::to_integer<unsigned>(image[at]) | std::to_integer<unsigned>(image[at + 1])
                                                                         << 8;
        if ((odd ? pair >> 4 : pair & 0xFFF) == 0 && (sector < firstSector || sector >= firstSector + 45)) {
            const unsigned marked = odd ? pair | 0xFF70 : pair | 0x0FF7;
            image[at] = image[at + 9 * 512] = static_cast<std::byte>(marked);
            image[at + 1] = image[at + 1 + 9 * 512] = static_cast<std::byte>(marked >> 8);
        }
    }
}

// Of three sectors, one becomes the new directory, and two lie within the new file.
Loaded start(DWORD sector) {
    auto medium = std::make_unique<winlayer::MemoryStore>(startImage());
    if (sector > firstDataSector + 100) {
        narrow(medium->bytes(), std::min(sector - (sector % 3 == 0 ? 0 : 20), winlayer::sectors1440 - 45));
    }
    winlayer::MemoryStore* const raw = medium.get();
    Loaded run{DisketteDrive::make(std::move(medium)), raw};
    run.drive->setClock([] { return DisketteMachine::moment; });
    return run;
}

void setFault(DisketteDrive& drive, DWORD sector, SectorFault::Kind kind) {
    winlayer::DisketteState state;
    state.faults.push_back({sector, kind, ERROR_CRC, SectorFault::always});
    drive.setState(state);
}

class FaultAtEachSector : public testing::TestWithParam<SectorFault::Kind> {};

}  // namespace

TEST_P(FaultAtEachSector, IsReportedOrDoesNoHarm) {
    unsigned reported = 0;
    for (DWORD sector = 0; sector < winlayer::sectors1440; ++sector) {
        const Loaded run = start(sector);
        setFault(*run.drive, sector, GetParam());
        const Outcome outcome = work(*run.drive);
        reported += outcome.failed ? 1 : 0;
        run.drive->setState({});
        ASSERT_EQ(run.drive->settle(), done);
        ASSERT_EQ(check(*run.drive, outcome), "") << "sector " << sector;
        // No cluster is lost, and none that a file needs is free.
        const std::vector<unsigned> table = tableOf(run.medium->bytes());
        const auto taken =
            std::count_if(table.begin(), table.end(), [](unsigned e) { return e != 0 && e != 0xFF7; });
        ASSERT_EQ(taken, clustersOf(pictureOf(*run.drive))) << "sector " << sector;
    }
    // The sectors behind those of the start are all written in their turn; a failing read meets those of the
    // boot sector, the first FAT, the root and a directory, a failing write those of both FATs, the root and
    // a directory.
    EXPECT_GE(reported, GetParam() == SectorFault::Kind::ReadFails ? 4U : 2650U);
}

INSTANTIATE_TEST_SUITE_P(Kinds, FaultAtEachSector,
                         testing::Values(SectorFault::Kind::ReadFails, SectorFault::Kind::WriteFails,
                                         SectorFault::Kind::AccessFails));

// A write that the medium loses is reported as done. Whoever settles the drive and reads back sees it: the
// drive then says just what a drive says that has never seen this medium.
TEST(LostWriteAtEachSector, ShowsWhenTheDiskIsReadBack) {
    unsigned noticed = 0;
    for (DWORD sector = 0; sector < winlayer::sectors1440; ++sector) {
        const Loaded run = start(sector);
        setFault(*run.drive, sector, SectorFault::Kind::WriteLost);
        const Outcome outcome = work(*run.drive);
        EXPECT_FALSE(outcome.failed && sector > 18) << "sector " << sector;
        ASSERT_EQ(run.drive->settle(), done);
        const std::string seen = check(*run.drive, outcome);
        auto copy = std::make_unique<winlayer::MemoryStore>(
            std::vector<std::byte>(run.medium->bytes().begin(), run.medium->bytes().end()));
        ASSERT_EQ(seen, check(*DisketteDrive::make(std::move(copy)), outcome)) << "sector " << sector;
        noticed += seen.empty() ? 0 : 1;
    }
    EXPECT_GE(noticed, 2650U);
}
