// Diskettes that lie: loops, chains that lead nowhere, names that are paths, parameters that cannot be.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/diskette_exercise.h"
#include "support/diskette_files.h"
#include "support/diskette_machine.h"
#include "support/random_volume.h"
#include "winlayer/diskette/little_endian.h"

using winlayer::DisketteDrive;
using winlayer::put16;
using winlayer::put32;
using winlayer::put8;
using Names = std::vector<std::string>;

namespace {

constexpr DWORD done = NO_ERROR;
constexpr std::size_t rootDirectory = 19 * 512;
const std::string corrupt = "error " + std::to_string(ERROR_FILE_CORRUPT);
const Names noVolume = {"error " + std::to_string(ERROR_UNRECOGNIZED_VOLUME)};

// Clusters: F has 2 to 11; directory D 12, its file G 13, directory D\E 14.
class HostileDiskette : public testing::Test {
protected:
    DisketteMachine diskette;
    DisketteDrive& drive = diskette.drive();

    void SetUp() override {
        ASSERT_EQ(writeWhole(drive, "F", std::string(5000, 'f')), done);
        ASSERT_EQ(drive.createDirectory("D"), done);
        ASSERT_EQ(writeWhole(drive, "D\\G", "g"), done);
        ASSERT_EQ(drive.createDirectory("D\\E"), done);
    }
    static std::size_t clusterAt(DWORD cluster) { return (33 + cluster - 2) * std::size_t{512}; }
    // The n-th entry behind a place.
    std::span<std::byte> entry(std::size_t place, std::size_t n) {
        return diskette.image().subspan(place + n * 32, 32);
    }
    void setFat(DWORD cluster, DWORD value) {
        for (const std::size_t fat : {512u, 5120u}) {
            const std::size_t at = fat + cluster * 3 / 2;
            const DWORD old = winlayer::get16(diskette.image(), at);
            put16(diskette.image(), at,
                  cluster % 2 == 0 ? (old & 0xF000) | value : (old & 0x000F) | value << 4);
        }
        drive.settle();
    }
    void setCluster(std::size_t place, std::size_t n, DWORD cluster) {
        put16(entry(place, n), 26, cluster);
        drive.settle();
    }
    void setName(std::size_t place, std::size_t n, const char* name) {
        std::transform(name, name + 11, entry(place, n).begin(),
                       [](char c) { return static_cast<std::byte>(c); });
        drive.settle();
    }
};

}  // namespace

TEST_F(HostileDiskette, AFilesChainThatIsNoneIsFoundAndCanBeErased) {
    for (const DWORD next : {2u, 5u, 0u, 1u, 2849u, 0xFF0u, 0xFF7u, 0xFFFu}) {
        SCOPED_TRACE(next);
        ASSERT_EQ(writeWhole(drive, "F", std::string(5000, 'f')), done);
        setFat(5, next);
        EXPECT_EQ(contentOf(drive, "F"), corrupt);
        {
            const TestFile file = openFile(drive, "F", OPEN_EXISTING);
            EXPECT_EQ(file->write(6000, bytesOf("x")).error, ERROR_FILE_CORRUPT);
            EXPECT_EQ(file->resize(100), ERROR_FILE_CORRUPT);
        }
        EXPECT_EQ(drive.removeFile("F"), done);
        for (DWORD cluster = 2; cluster <= 11; ++cluster) {
            setFat(cluster, 0);
        }
    }
    EXPECT_EQ(contentOf(drive, "D\\G"), "g");
    EXPECT_EQ(freeClusters(diskette.image()), 2847U - 3);
}

TEST_F(HostileDiskette, AFirstClusterOutsideIsFound) {
    for (const DWORD first : {1u, 2849u, 0xFFFu, 0xFFFFu}) {
        setCluster(rootDirectory, 0, first);
        EXPECT_EQ(contentOf(drive, "F"), corrupt) << first;
        setCluster(clusterAt(12), 3, first);
        EXPECT_EQ(namesIn(drive, "D\\E"), Names{corrupt}) << first;
    }
    EXPECT_EQ(drive.removeFile("F"), done);
}

// To the root, to the parent, to itself.
TEST_F(HostileDiskette, ADirectoryThatIsItsOwnAncestorIsNotEntered) {
    for (const DWORD cluster : {0u, 12u}) {
        setCluster(clusterAt(12), 3, cluster);
        EXPECT_EQ(namesIn(drive, "D"), (Names{".", "..", "G", "E"}));
        EXPECT_EQ(namesIn(drive, "D\\E"), Names{corrupt});
        EXPECT_EQ(contentOf(drive, "D\\E\\G"), corrupt);
        EXPECT_EQ(drive.removeDirectory("D\\E"), ERROR_FILE_CORRUPT);
    }
    setFat(12, 12);
    EXPECT_EQ(namesIn(drive, "D"), Names{corrupt});
    EXPECT_EQ(namesIn(drive, ""), (Names{"F", "D"}));
}

// A name must not lead a walk somewhere else, and every entry can be erased by the name that it is listed
// with.
TEST_F(HostileDiskette, NamesThatNoPathCouldNameAreShownOtherwise) {
    const std::pair<const char*, const char*> names[] = {
        {"..         ", "__"},      {".          ", "_"},     {"A\\B     C/D", "A_B.C_D"},
        {"*       ???", "_.___"},   {"           ", "_"},     {"        TXT", "_.TXT"},
        {"A\1B     \t  ", "A_B._"}, {"A.B     C  ", "A_B.C"}, {"lower   txt", "lower.txt"},
        {"A B     T T", "A B.T T"}};
    for (const auto& [raw, shown] : names) {
        SCOPED_TRACE(raw);
        ASSERT_EQ(writeWhole(drive, "F", "f"), done);
        const std::string before = namesIn(drive, "")[0];
        setName(rootDirectory, 0, raw);
        EXPECT_EQ(namesIn(drive, ""), (Names{shown, "D"}));
        EXPECT_EQ(contentOf(drive, shown), "f");
        EXPECT_EQ(drive.removeFile(shown), done);
    }
    setName(clusterAt(12), 2, "..         ");
    EXPECT_EQ(namesIn(drive, "D"), (Names{".", "..", "__", "E"}));
}

TEST_F(HostileDiskette, WhatLiesBehindTheEndOfADirectoryStaysUnseen) {
    for (std::size_t n = 3; n < 20; ++n) {
        setName(rootDirectory, n, "GARBAGE    ");
    }
    EXPECT_EQ(namesIn(drive, ""), (Names{"F", "D"}));
    ASSERT_EQ(writeWhole(drive, "H", "h"), done);
    EXPECT_EQ(namesIn(drive, ""), (Names{"F", "D", "H"}));
    ASSERT_EQ(writeWhole(drive, "I", "i"), done);
    EXPECT_EQ(namesIn(drive, ""), (Names{"F", "D", "H", "I"}));
}

TEST_F(HostileDiskette, ParametersThatCannotBeAreNoVolume) {
    struct Row {
        std::size_t at;
        unsigned bytes;
        DWORD value;
    };
    const Row rows[] = {{0x00, 1, 0x00}, {0x0B, 2, 0},  {0x0B, 2, 1024},   {0x0D, 1, 0},
                        {0x0D, 1, 3},    {0x0E, 2, 0},  {0x0E, 2, 0xFFFF}, {0x10, 1, 0},
                        {0x10, 1, 3},    {0x11, 2, 0},  {0x11, 2, 225},    {0x11, 2, 0xFFF0},
                        {0x13, 2, 2881}, {0x13, 2, 33}, {0x13, 2, 1},      {0x15, 1, 0x12},
                        {0x16, 2, 0},    {0x16, 2, 8},  {0x16, 2, 1500},   {0x16, 2, 0xFFFF},
                        {0x13, 2, 0}};
    const std::vector<std::byte> good(diskette.image().begin(), diskette.image().begin() + 512);
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "offset " << row.at << " value " << row.value);
        std::copy(good.begin(), good.end(), diskette.image().begin());
        row.bytes == 1 ? put8(diskette.image(), row.at, row.value)
                       : put16(diskette.image(), row.at, row.value);
        drive.settle();
        EXPECT_EQ(namesIn(drive, ""), noVolume);
    }
    // The 32-bit total counts when the other is zero; each of them is believed only as far as the medium
    // reaches.
    put32(diskette.image(), 0x20, 2880);
    drive.settle();
    EXPECT_EQ(contentOf(drive, "F"), std::string(5000, 'f'));
    put32(diskette.image(), 0x20, 0x10000 + 2880);
    drive.settle();
    EXPECT_EQ(namesIn(drive, ""), noVolume);
}

// Whatever bytes the system area holds, every call comes back with one of the errors that a caller can
// expect.
TEST(HostileDisketteAtRandom, EveryCallReturns) {
    const std::set<DWORD> expected = {done,
                                      ERROR_FILE_NOT_FOUND,
                                      ERROR_PATH_NOT_FOUND,
                                      ERROR_ACCESS_DENIED,
                                      ERROR_CANNOT_MAKE,
                                      ERROR_DISK_FULL,
                                      ERROR_ALREADY_EXISTS,
                                      ERROR_DIR_NOT_EMPTY,
                                      ERROR_DIRECTORY,
                                      ERROR_FILE_INVALID,
                                      ERROR_FILE_CORRUPT,
                                      ERROR_UNRECOGNIZED_VOLUME};
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << "\n";
    std::mt19937 random(seed);
    RandomVolume volume(7);
    volume.work(150);
    const std::vector<std::byte> start(volume.image().begin(), volume.image().end());
    for (unsigned run = 0; run < 500 && !testing::Test::HasFailure(); ++run) {
        auto medium = std::make_unique<winlayer::MemoryStore>(start);
        const std::span<std::byte> image = medium->bytes();
        for (std::size_t edits = 1 + random() % 40; edits > 0; --edits) {
            // Rarely the parameters, mostly FATs, root and the directories behind.
            const std::size_t at = random() % 50 == 0 ? random() % 64 : 512 + random() % (60 * 512);
            image[at] = static_cast<std::byte>(random() % 3 == 0 ? random() : random() % 4);
        }
        const auto drive = DisketteDrive::make(std::move(medium));
        for (const DWORD error : DisketteExercise(*drive).run()) {
            EXPECT_EQ(expected.count(error), 1U) << "error " << error << " in run " << run;
        }
    }
}
