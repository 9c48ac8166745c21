#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <random>

#include "FormatDiskLib/boot_emulator.h"
#include "boot_check.h"

// The boot code runs on an emulated processor; the emulator's BIOS serves its reads and its screen.

namespace {

using End = BootEmulator::End;
const std::string message = "Disk Error, Press Ctrl-Alt-Del...";

TEST(BootCode, EntersTheLoaderAsItsContractSays) {
    for (const std::uint16_t segment : {std::uint16_t{0}, std::uint16_t{0x7C0}}) {
        TestDiskette diskette;
        const auto loader = makeLoader(4);
        diskette.putLoader(loader, 2, 7);
        BootEmulator pc(diskette);
        ASSERT_EQ(pc.boot(segment), End::LoaderEntered) << pc.trouble << pc.screen;
        EXPECT_EQ(pc.reg(UC_X86_REG_CS), 0x0820);  // the emulator stops at 8205h, so the offset is 5
        EXPECT_EQ(pc.reg(UC_X86_REG_AX) & 0xFF, 0);
        const unsigned stack = pc.reg(UC_X86_REG_SS) * 16U + pc.reg(UC_X86_REG_SP);
        EXPECT_EQ(pc.word(stack), 0x7E82U);
        EXPECT_EQ(pc.word(stack + 2), 0x0000U);
        EXPECT_EQ(pc.memory(0x8000, loader.size()), loader);
        EXPECT_EQ(pc.screen, "");
    }
}

TEST(BootCode, LeavesItsVariablesAtTheirPlaces) {
    TestDiskette diskette;
    diskette.putLoader(makeLoader(3), 0, 10);
    BootEmulator pc(diskette);
    ASSERT_EQ(pc.boot(), End::LoaderEntered);
    EXPECT_EQ(pc.word(0x7E3E), 33U + 8 + 3);  // the sector behind the last one read
    EXPECT_EQ(pc.word(0x7E42), 33U);          // first data sector
    EXPECT_EQ(pc.memory(0x7E46, 1)[0], 0);    // sectors left
    EXPECT_EQ(pc.memory(0x7E47, 1)[0], 2);    // tries left
    const auto& image = boot_sector::Template();
    const std::vector<unsigned char> rest(image.begin() + 0x0A, image.end());
    EXPECT_EQ(pc.memory(0x7E48, rest.size()), rest);
}

// The largest loader: 127 sectors cross tracks, heads and the 64 KB line at 10000h.
TEST(BootCode, ReadsEachSectorOnceAcrossTracksAndHeads) {
    TestDiskette diskette;
    const auto loader = makeLoader(127);
    diskette.putLoader(loader, 0, 40);
    BootEmulator pc(diskette);
    ASSERT_EQ(pc.boot(), End::LoaderEntered) << pc.trouble << pc.screen;
    EXPECT_EQ(pc.memory(0x8000, loader.size()), loader);
    std::vector<unsigned> expected;
    for (unsigned i = 0; i < 14; ++i) expected.push_back(19 + i);
    for (unsigned i = 0; i < 127; ++i) expected.push_back(33 + 38 + i);
    EXPECT_EQ(pc.tried, expected);
}

// A track of one sector on one head makes every sector a cylinder of its own, more of them than a byte holds.
TEST(BootCode, CountsCylindersInTenBits) {
    TestDiskette diskette;
    diskette.setEntry(0, "QZLOADERBIN", 300 - 33 + 2, 1024);
    std::copy_n(diskette.entry(0), 32, diskette.sector(19 * 36));
    diskette.bytes[boot_sector::sectorsPerTrackAt] = 1;
    diskette.bytes[boot_sector::headsAt] = 1;
    BootEmulator pc(diskette);
    EXPECT_EQ(pc.boot(), End::Halted) << pc.trouble;
    EXPECT_EQ(pc.tried.back(), 300U * 36);
}

TEST(BootCode, FindsTheLoaderInTheLastEntryAndTheLastCluster) {
    TestDiskette diskette;
    diskette.putLoader(makeLoader(2), 223, TestDiskette::lastCluster - 1);
    BootEmulator pc(diskette);
    EXPECT_EQ(pc.boot(), End::LoaderEntered) << pc.trouble << pc.screen;
    EXPECT_EQ(pc.tried.back(), 2879U);
}

TEST(BootCode, PassesOverEntriesThatAreNotTheLoader) {
    TestDiskette diskette;
    const auto loader = makeLoader(2);
    diskette.putLoader(loader, 3, 20);
    diskette.setEntry(0, "\xE5ZLOADERBIN", 5, 1024);  // deleted
    diskette.setEntry(1, "QZLOADERBIN", 0, 0);        // empty
    diskette.setEntry(2, "QZLOADERBIO", 6, 1024);     // differs in the last letter
    BootEmulator pc(diskette);
    ASSERT_EQ(pc.boot(), End::LoaderEntered) << pc.trouble << pc.screen;
    EXPECT_EQ(pc.memory(0x8000, loader.size()), loader);
}

TEST(BootCode, TriesEachSectorTwice) {
    for (const unsigned sector : {19U, 32U, 33U, 36U}) {
        TestDiskette diskette;
        diskette.putLoader(makeLoader(5));
        BootEmulator once(diskette);
        once.failures[sector] = 1;
        EXPECT_EQ(once.boot(), End::LoaderEntered) << "sector " << sector;
        BootEmulator twice(diskette);
        twice.failures[sector] = 2;
        EXPECT_EQ(twice.boot(), End::Halted) << "sector " << sector;
        EXPECT_EQ(twice.screen, message);
        EXPECT_EQ(std::count(twice.tried.begin(), twice.tried.end(), sector), 2);
        EXPECT_EQ(twice.tried.back(), sector);
    }
}

TEST(BootCode, SaysSoAndStopsWhenTheLoaderCannotBeStarted) {
    struct Case {
        const char* what;
        std::function<void(TestDiskette&)> damage;
    };
    const Case cases[] = {
        {"no file at all", [](TestDiskette& d) { d.entry(0)[0] = 0; }},
        {"another name", [](TestDiskette& d) { d.entry(0)[10] = 'M'; }},
        {"deleted", [](TestDiskette& d) { d.entry(0)[0] = 0xE5; }},
        {"behind the directory's end",
         [](TestDiskette& d) {
             d.putLoader(makeLoader(3), 5);
             d.entry(2)[0] = 0;
         }},
        {"no first cluster", [](TestDiskette& d) { d.entry(0)[0x1A] = 0; }},
        {"checksum one too high", [](TestDiskette& d) { ++d.cluster(3)[0x20]; }},
        {"checksum of the last word", [](TestDiskette& d) { ++d.cluster(4)[510]; }},
        {"no block covered", [](TestDiskette& d) { d.cluster(3)[4] = 0; }},
        {"mark, low byte", [](TestDiskette& d) { d.cluster(2)[510] = 0xAA; }},
        {"mark, high byte", [](TestDiskette& d) { d.cluster(2)[511] = 0x55; }},
        {"signature, first word", [](TestDiskette& d) { ++d.cluster(3)[0], --d.cluster(3)[6]; }},
        {"signature, last word", [](TestDiskette& d) { ++d.cluster(3)[3], --d.cluster(3)[7]; }},
        {"unreadable directory", [](TestDiskette& d) { d.unreadable.insert(30); }},
        {"unreadable loader", [](TestDiskette& d) { d.unreadable.insert(35); }},
    };
    for (const auto& [what, damage] : cases) {
        TestDiskette diskette;
        diskette.putLoader(makeLoader(3));
        damage(diskette);
        BootEmulator pc(diskette);
        EXPECT_EQ(pc.boot(), End::Halted) << what << ": " << pc.trouble;
        EXPECT_EQ(pc.screen, message) << what;
        EXPECT_TRUE(pc.reg(UC_X86_REG_FLAGS) & 0x200) << what << ": no key could restart the machine";
    }
}

TEST(BootCode, StartsWhatAReturningLoaderHasPutAt7C00) {
    TestDiskette diskette;
    // xor ax, ax; mov es, ax; mov word ptr es:[7C00h], (sti, hlt); retf
    diskette.putLoader(
        makeLoader(2, {0x31, 0xC0, 0x8E, 0xC0, 0x26, 0xC7, 0x06, 0x00, 0x7C, 0xFB, 0xF4, 0xCB}));
    BootEmulator pc(diskette);
    ASSERT_EQ(pc.boot(), End::LoaderEntered);
    ASSERT_EQ(pc.enterLoader(), End::Halted) << pc.trouble;
    EXPECT_EQ(pc.reg(UC_X86_REG_CS), 0);
    EXPECT_EQ(pc.reg(UC_X86_REG_IP), 0x7C02);
}

TEST(SampleLoader, SaysThatItRunsWaitsForAKeyAndRestarts) {
    const auto loader = builtSample("disk/QZLOADER.BIN");
    EXPECT_TRUE(boot_check::CheckLoader(loader).passed());
    TestDiskette diskette;
    diskette.putLoader(loader);
    BootEmulator pc(diskette);
    ASSERT_EQ(pc.boot(), End::LoaderEntered);
    ASSERT_EQ(pc.enterLoader(), End::Halted) << pc.trouble;
    EXPECT_EQ(pc.screen, "\r\nQZLOADER started. Press any key to restart.\r\n");
    EXPECT_EQ(pc.keys, 1);
    EXPECT_EQ(pc.reg(UC_X86_REG_CS), 0xFFFF);
}

// Damages a sound diskette at random places of all that matters to a start.
class Damage {
public:
    Damage(TestDiskette& diskette, std::mt19937& random)
        : diskette_(diskette),
          random_(random),
          sectors_(below(20) == 0 ? 127 : 2 + below(12)),
          index_(below(4) == 0 ? 223 : below(20)),
          first_(2 + below(2840 - sectors_)) {
        diskette_.putLoader(makeLoader(sectors_), index_, first_);
    }

    void apply() {
        switch (below(10)) {
            case 0:
                return change(diskette_.sector(0)[0x0B + below(0x11)]);  // parameter block
            case 1:
                return change(diskette_.sector(0)[below(4) == 0 ? 510 : below(3)]);
            case 2:
                return change(diskette_.entry(index_)[below(32)]);
            case 3:
                return change(diskette_.cluster(first_)[510 + below(2)]);  // mark
            case 4:
                return change(diskette_.cluster(first_ + 1)[below(8)]);  // head
            case 5:
                return change(diskette_.cluster(first_ + below(sectors_))[below(512)]);
            case 6:
                return diskette_.setFat(first_ + below(sectors_), below(4096));
            case 7:
                diskette_.unreadable.insert(below(2) ? 19 + below(14) : 31 + first_ + below(sectors_));
                return;
            case 8:
                return change(diskette_.entry(below(index_ + 1))[0]);
            default:
                return coverAnother();
        }
    }

private:
    unsigned below(unsigned bound) { return static_cast<unsigned>(random_() % bound); }
    void change(unsigned char& byte) { byte = static_cast<unsigned char>(below(3) == 0 ? 0 : below(256)); }

    // Another number of covered blocks, with a sum that is right if zeros lie behind the loader.
    void coverAnother() {
        unsigned char* const start = diskette_.cluster(first_);
        std::vector<unsigned char> loader(start, start + sectors_ * 512);
        const unsigned blocks = 1 + below(2 * sectors_);
        loader[0x204] = static_cast<unsigned char>(blocks);
        sealLoader(loader, std::min(blocks, sectors_ - 1));
        std::copy(loader.begin(), loader.end(), start);
    }

    TestDiskette& diskette_;
    std::mt19937& random_;
    const unsigned sectors_;
    const unsigned index_;
    const unsigned first_;
};

TEST(BootCode, StartsWhatTheCheckSaysItStarts) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    int started = 0;
    int sound = 0;
    constexpr int rounds = 600;
    for (int round = 0; round < rounds; ++round) {
        TestDiskette diskette;
        Damage damage(diskette, random);
        for (auto count = random() % 4; count > 0; --count) {
            damage.apply();
        }
        const auto report = boot_check::CheckDiskette(
            [&](DWORD number, boot_check::Sector sector) { return diskette.read(number, sector); });
        std::string told;
        for (const auto& finding : report.findings) {
            told += finding.sentence + "\n";
        }
        SCOPED_TRACE("round " + std::to_string(round) + "\n" + told);
        if (diskette.bytes[0] != 0xEB || diskette.bytes[1] != 0x41 || diskette.bytes[2] != 0x90) {
            ASSERT_FALSE(report.passed() || report.loaderStarts);  // what runs is not the boot code
            continue;
        }
        BootEmulator pc(diskette);
        const bool starts = pc.boot() == End::LoaderEntered;
        ASSERT_EQ(report.loaderStarts, starts) << pc.trouble << pc.screen;
        ASSERT_TRUE(starts || !report.passed());
        started += starts;
        sound += report.passed();
    }
    EXPECT_GT(started, rounds / 5);
    EXPECT_LT(started, rounds * 4 / 5);
    EXPECT_GT(sound, rounds / 8);
    EXPECT_LT(sound, started);
}

}  // namespace
