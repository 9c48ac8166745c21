#include "boot_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "FormatDiskLib/test_diskette.h"

namespace {

boot_check::Report check(const TestDiskette& diskette) {
    return boot_check::CheckDiskette(
        [&](DWORD number, boot_check::Sector sector) { return diskette.read(number, sector); });
}

std::vector<std::string> failed(const boot_check::Report& report) {
    std::vector<std::string> names;
    for (const auto& finding : report.findings) {
        if (!finding.passed) {
            names.push_back(finding.name);
        }
    }
    return names;
}

using Names = std::vector<std::string>;

TEST(BootCheck, PassesASoundDiskette) {
    for (const unsigned sectors : {2U, 9U, 127U}) {
        TestDiskette diskette;
        diskette.putLoader(makeLoader(sectors), 7, 341);
        const auto report = check(diskette);
        EXPECT_EQ(failed(report), Names{});
        EXPECT_TRUE(report.passed());
        EXPECT_TRUE(report.loaderStarts);
    }
}

// What each damage is called, whether the boot code stops at it, and that nothing else is blamed.
TEST(BootCheck, NamesTheDamage) {
    struct Case {
        const char* name;
        bool starts;
        std::function<void(TestDiskette&)> damage;
    };
    const Case cases[] = {
        {"boot-sector", false, [](TestDiskette& d) { d.unreadable.insert(0); }},
        {"signature", false, [](TestDiskette& d) { d.bytes[0x1FF] = 0; }},
        {"jump", false, [](TestDiskette& d) { d.bytes[1] = 0x3C; }},
        {"parameter-block", true, [](TestDiskette& d) { d.bytes[0x15] = 0xF9; }},
        {"boot-code", false, [](TestDiskette& d) { ++d.bytes[0x90]; }},
        {"root-directory", false, [](TestDiskette& d) { d.unreadable.insert(32); }},
        {"loader-entry", false, [](TestDiskette& d) { d.entry(1)[0] = 0xE5; }},
        {"loader-mark", false, [](TestDiskette& d) { d.cluster(10)[510] = 0; }},
        {"loader-signature", false, [](TestDiskette& d) { d.cluster(11)[2] = 'X'; }},
        {"loader-checksum", false, [](TestDiskette& d) { ++d.cluster(12)[99]; }},
        {"loader-readable", false, [](TestDiskette& d) { d.unreadable.insert(33 + 8 + 2); }},
        // The boot code reads straight on and finds the right sectors whatever the FAT says ...
        {"loader-run", true, [](TestDiskette& d) { d.setFat(11, 0xFFF); }},
        {"loader-run", true, [](TestDiskette& d) { d.setFat(14, 15); }},
        {"loader-run", true, [](TestDiskette& d) { d.setFat(12, 0); }},
        {"loader-run", true, [](TestDiskette& d) { d.setFat(12, 14); }},
        {"loader-run", true, [](TestDiskette& d) { d.unreadable.insert(1); }},
        // ... and leaves out what follows the last whole sector.
        {"loader-size", true,
         [](TestDiskette& d) {
             d.setFat(14, 15);
             d.setFat(15, 0xFFF);
             d.entry(1)[0x1C] = 1;
         }},
    };
    for (const auto& [name, starts, damage] : cases) {
        TestDiskette diskette;
        diskette.putLoader(makeLoader(5), 1, 10);
        damage(diskette);
        const auto report = check(diskette);
        EXPECT_EQ(failed(report), Names{name}) << report.findings.back().sentence;
        EXPECT_EQ(report.loaderStarts, starts) << name;
        EXPECT_FALSE(report.passed()) << name;
        const bool unreadable = std::any_of(report.findings.begin(), report.findings.end(),
                                            [](const auto& finding) { return finding.unreadable; });
        EXPECT_EQ(unreadable, !diskette.unreadable.empty()) << name;
    }
}

std::string firstFault(const boot_check::Report& report) {
    return std::find_if(report.findings.begin(), report.findings.end(),
                        [](const boot_check::Finding& finding) { return !finding.passed; })
        ->sentence;
}

TEST(BootCheck, TellsALoaderInPieces) {
    TestDiskette diskette;
    diskette.putFile(0, "QZLOADERBIN", makeLoader(4), {5, 6, 9, 10});
    const auto report = check(diskette);
    EXPECT_EQ(failed(report), (Names{"loader-run", "loader-checksum"})) << "first the cause";
    EXPECT_NE(firstFault(report).find("cluster 9 follows cluster 6"), std::string::npos);
    for (const unsigned nowhere : {0U, 0xFF7U, 2849U}) {
        diskette.setFat(6, nowhere);
        EXPECT_NE(firstFault(check(diskette)).find("breaks off at cluster 6"), std::string::npos) << nowhere;
    }
}

TEST(BootCheck, TellsALoaderThatIsSaidToLieOutsideTheDiskette) {
    TestDiskette diskette;
    diskette.putLoader(makeLoader(2));
    diskette.setEntry(0, "QZLOADERBIN", 2849, 1024);
    EXPECT_EQ(failed(check(diskette)), (Names{"loader-cluster", "loader-run", "loader-readable"}));
    diskette.setEntry(0, "QZLOADERBIN", 2848, 1024);
    EXPECT_EQ(failed(check(diskette)), (Names{"loader-run", "loader-readable"}));
}

TEST(BootCheck, ReadsTheFatAcrossASectorBoundary) {
    TestDiskette diskette;  // entry 341 lies in bytes 511 and 512 of the FAT
    diskette.putLoader(makeLoader(3), 0, 340);
    EXPECT_TRUE(check(diskette).passed());
    diskette.bytes[2 * 512] ^= 0x10;
    EXPECT_EQ(failed(check(diskette)), Names{"loader-run"});
}

TEST(BootCheck, ChecksALoaderBeforeItIsWritten) {
    const auto failures = [](const std::vector<unsigned char>& file) {
        return failed(boot_check::CheckLoader(file));
    };
    EXPECT_EQ(failures(makeLoader(2)), Names{});
    EXPECT_EQ(failures(makeLoader(127)), Names{});
    EXPECT_TRUE(boot_check::CheckLoader(makeLoader(127)).loaderStarts);

    EXPECT_EQ(failures({}), (Names{"loader-size", "loader-mark"}));
    EXPECT_EQ(failures(std::vector<unsigned char>(511, 0xAA)), (Names{"loader-size", "loader-mark"}));
    auto odd = makeLoader(3);
    odd.push_back(0);
    EXPECT_EQ(failures(odd), Names{"loader-size"});
    EXPECT_TRUE(boot_check::CheckLoader(odd).loaderStarts);
    auto large = makeLoader(127);
    large.resize(128 * 512);  // 64 KB: the boot code would read nothing at all
    EXPECT_EQ(failures(large), (Names{"loader-size", "loader-mark"}));
    auto single = makeLoader(2);
    single.resize(512);
    EXPECT_EQ(failures(single), (Names{"loader-size", "loader-signature"}));
    auto changed = makeLoader(6);
    ++changed.back();
    EXPECT_EQ(failures(changed), Names{"loader-checksum"});
    auto few = makeLoader(6);
    few[0x204] = 3;
    sealLoader(few, 3);
    EXPECT_EQ(failures(few), Names{});
    auto many = makeLoader(6);
    many[0x204] = 7;
    sealLoader(many, 5);
    EXPECT_EQ(failures(many), Names{"loader-blocks"});
}

}  // namespace
