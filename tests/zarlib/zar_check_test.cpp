#include "zar_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "support/files.h"
#include "support/zar_bytes.h"

namespace {

using test::newRecord;
using test::number;
using test::oldRecord;
using test::Padding;
using test::ZarFile;
using zar::Checker;
using zar::Entry;
using zar::FaultKind;

// Reads from memory, at most `limit` bytes at a time.
zar::ReadAt reader(const std::string& bytes, std::size_t limit = SIZE_MAX) {
    return [&bytes, limit](std::uint64_t offset, unsigned char* buffer, std::size_t count) {
        const std::size_t size = std::min({count, limit, bytes.size() - static_cast<std::size_t>(offset)});
        std::memcpy(buffer, bytes.data() + offset, size);
        return size;
    };
}

struct Walk {
    std::vector<Entry> entries;
    std::optional<zar::Fault> fault;
};

Walk walk(const std::string& bytes) {
    Checker checker(reader(bytes), bytes.size());
    Walk result;
    for (Entry entry; checker.Next(entry);) result.entries.push_back(entry);
    result.fault = checker.FirstFault();
    return result;
}

TEST(ZarCheckTest, TellsAllAboutARecord) {
    const std::string archive = newRecord({"A.TXT", "abc", 32}) + newRecord({"DOS\\IO.SYS", "hello", 7});
    const Walk result = walk(archive);
    ASSERT_EQ(result.entries.size(), 2U);
    EXPECT_FALSE(result.fault);
    const Entry& second = result.entries[1];
    EXPECT_EQ(second.name, "DOS\\IO.SYS");
    EXPECT_EQ(second.size, 5U);
    EXPECT_EQ(second.attributes, 7U);
    EXPECT_EQ(second.offset, 56U);
    EXPECT_EQ(second.dataOffset, 56U + 44 + 10);
    EXPECT_FALSE(second.oldLayout);
    EXPECT_TRUE(walk("").entries.empty());
    EXPECT_FALSE(walk("").fault) << "an archive of no records";
}

TEST(ZarCheckTest, ReadsOldRecordsHoweverTheyArePadded) {
    for (const Padding padding : {Padding::Stored, Padding::Scrambled}) {
        const std::string archive =
            oldRecord({"IO.SYS", "abc"}, padding) + oldRecord({"SIXTEEN-LETTERS.", "d"}, padding);
        const Walk result = walk(archive);
        ASSERT_EQ(result.entries.size(), 2U);
        EXPECT_FALSE(result.fault);
        EXPECT_EQ(result.entries[0].name, "IO.SYS");
        EXPECT_EQ(result.entries[0].dataOffset, 24U);
        EXPECT_EQ(result.entries[1].name, "SIXTEEN-LETTERS.");
        EXPECT_EQ(result.entries[1].offset, 27U);
        EXPECT_TRUE(result.entries[1].oldLayout);
    }
}

TEST(ZarCheckTest, NamesTheFirstFaultAndItsPlace) {
    const std::string good = newRecord({"A.TXT", "abc"});
    const auto with = [&](std::size_t offset, const std::string& bytes) {
        std::string changed = good + good;
        changed.replace(56 + offset, bytes.size(), bytes);
        return changed;
    };
    const std::string old = oldRecord({"IO.SYS", "abc"});
    struct Row {
        const char* what;
        std::string archive;
        FaultKind kind;
        std::uint64_t offset;
        std::size_t entries;
    };
    const Row rows[] = {
        {"zeros", std::string(8, '\0'), FaultKind::UnknownSignature, 0, 0},
        {"second signature", with(0, "x"), FaultKind::UnknownSignature, 56, 1},
        {"old after new", good + old, FaultKind::UnknownSignature, 56, 1},
        {"new after old", old + good, FaultKind::UnknownSignature, 27, 1},
        {"name marker", with(4, "x"), FaultKind::MissingMarker, 60, 1},
        {"name end", with(17, "x"), FaultKind::MissingMarker, 73, 1},
        {"size", with(21, "x"), FaultKind::MissingMarker, 77, 1},
        {"size end", with(29, "x"), FaultKind::MissingMarker, 85, 1},
        {"attributes", with(33, "x"), FaultKind::MissingMarker, 89, 1},
        {"attributes end", with(41, "x"), FaultKind::MissingMarker, 97, 1},
        {"data", with(45, "x"), FaultKind::MissingMarker, 101, 1},
        {"record end", with(52, "x"), FaultKind::MissingMarker, 108, 1},
        {"name past end", with(8, number(45)), FaultKind::NamePastEnd, 64, 1},
        {"name of 4 GiB", with(8, number(0xFFFFFFFF)), FaultKind::NamePastEnd, 64, 1},
        {"no name", with(8, number(0)), FaultKind::NameLength, 64, 1},
        {"long name", newRecord({std::string(65535, 'n'), "x"}), FaultKind::NameLength, 8, 0},
        {"data past end", with(25, number(8)), FaultKind::DataPastEnd, 105, 1},
        {"data of 4 GiB", with(25, number(0xFFFFFFE4)), FaultKind::DataPastEnd, 105, 1},
        {"empty", good + newRecord({"E", ""}) + good, FaultKind::EmptyFile, 56 + 45, 3},
        {"key byte", with(14, std::string(1, '\0')), FaultKind::NameByte, 70, 2},
        {"zero byte", with(14, "\x93"), FaultKind::NameByte, 70, 2},
        {"parent", good + newRecord({"..\\X", "x"}) + good, FaultKind::NameLeavesTarget, 56 + 12, 3},
        {"device", good + newRecord({"nul.txt", "x"}), FaultKind::NameLeavesTarget, 56 + 12, 2},
        {"old: parent", old + oldRecord({"..\\X", "x"}), FaultKind::NameLeavesTarget, 27 + 4, 2},
        {"old: no name", old + oldRecord({"", "x"}), FaultKind::NameLength, 27 + 4, 2},
        {"old: empty", oldRecord({"A", ""}) + old, FaultKind::EmptyFile, 24, 2},
        {"old: past end", old + oldRecord({"A", "x"}).substr(0, 24), FaultKind::DataPastEnd, 51, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const Walk result = walk(row.archive);
        EXPECT_EQ(result.entries.size(), row.entries);
        if (!result.fault) {
            ADD_FAILURE() << "no fault";
            continue;
        }
        EXPECT_EQ(result.fault->kind, row.kind) << result.fault->reason;
        EXPECT_EQ(result.fault->offset, row.offset) << result.fault->reason;
        EXPECT_FALSE(result.fault->reason.empty());
    }
}

TEST(ZarCheckTest, ACutAnywhereButBetweenRecordsIsAFault) {
    for (const bool old : {false, true}) {
        const std::vector<ZarFile> files = {{"A.TXT", "abc"}, {"DOS\\B", "12345"}, {"C", "x"}};
        const std::string archive = old ? test::oldArchive(files) : test::newArchive(files);
        std::vector<std::size_t> ends = {0};
        for (const ZarFile& file : files) {
            ends.push_back(ends.back() + (old ? oldRecord(file) : newRecord(file)).size());
        }
        for (std::size_t cut = 0; cut <= archive.size(); ++cut) {
            const Walk result = walk(archive.substr(0, cut));
            const bool whole = std::find(ends.begin(), ends.end(), cut) != ends.end();
            EXPECT_EQ(!result.fault, whole) << "cut at " << cut;
            EXPECT_LE(result.entries.size(), files.size());
            if (result.fault) {
                EXPECT_LE(result.fault->offset, cut);
            }
        }
    }
}

TEST(ZarCheckTest, GivesTheDataInPieces) {
    const std::string data = test::pattern(200000);
    const std::string archive = newRecord({"A", "a"}) + newRecord({"B", data}) + newRecord({"C", "c"});
    const TempFolder folder;
    UTILS::DiskIO file(folder.file("a.zar", archive).c_str());
    // Pieces that are cut short by the source are put together.
    Checker inMemory(reader(archive, 777), archive.size());
    Checker onDisk(file);
    for (Checker* const checker : {&inMemory, &onDisk}) {
        Entry entry;
        ASSERT_TRUE(checker->Next(entry));
        ASSERT_TRUE(checker->Next(entry));
        std::string read;
        const auto take = [&](const unsigned char* bytes, std::size_t count) {
            read.append(reinterpret_cast<const char*>(bytes), count);
            return true;
        };
        EXPECT_TRUE(checker->ReadData(entry, take));
        EXPECT_EQ(read, data);
        EXPECT_FALSE(checker->ReadData(entry, [](const unsigned char*, std::size_t) { return false; }));
        EXPECT_TRUE(checker->Next(entry)) << "the walk goes on";
        EXPECT_EQ(entry.name, "C");
        EXPECT_FALSE(checker->Next(entry));
        EXPECT_FALSE(checker->FirstFault());
    }
}

TEST(ZarCheckTest, AnArchiveThatCannotBeReadIsAFault) {
    const std::string archive = newRecord({"A", "a"});
    Checker checker([](std::uint64_t, unsigned char*, std::size_t) { return std::size_t{0}; },
                    archive.size());
    Entry entry;
    EXPECT_FALSE(checker.Next(entry));
    ASSERT_TRUE(checker.FirstFault());
    EXPECT_EQ(checker.FirstFault()->kind, FaultKind::ReadFailure);
}

}  // namespace
