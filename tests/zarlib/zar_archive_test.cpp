#include "zar_archive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "support/files.h"
#include "support/zar_bytes.h"
#include "support/zar_recorder.h"
#include "zar_check.h"
#include "zar_extract.h"

namespace {

using test::Archiver;
using test::Outcome;
using test::pattern;
using test::success;
using Calls = std::vector<std::string>;

const Outcome writeFailure{"DiskIoException", 3, 0};
const Outcome openFailure{"DiskIoException", 1, 0};

class ZarArchiveTest : public testing::Test {
protected:
    ZarArchiveTest() { folder.directory("in"); }

    std::string in(const std::string& name = "") const {
        return folder / (name.empty() ? std::string("in") : "in\\" + name);
    }
    std::string add(const std::string& name, const std::string& content, DWORD attributes = 32) {
        return test::makeFile(folder, "in\\" + name, content, attributes);
    }
    std::string target() const { return folder / "a.zar"; }
    Outcome archive(const std::string& source) {
        archiver = std::make_unique<Archiver>(source.c_str(), target().c_str(), 0);
        return test::outcomeWithoutError([&] { archiver->Archive(); });
    }
    static std::string status(const std::string& path) { return "Archiviert die Datei:  " + path + " / 1"; }
    static std::vector<std::string> namesIn(const std::string& path) {
        UTILS::DiskIO file(path.c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, 0);
        zar::Checker checker(file);
        std::vector<std::string> names;
        for (zar::Entry entry; checker.Next(entry);) names.push_back(entry.name);
        EXPECT_FALSE(checker.FirstFault()) << checker.FirstFault()->reason;
        return names;
    }

    TempFolder folder;
    std::unique_ptr<Archiver> archiver;
};

TEST_F(ZarArchiveTest, WritesTheExampleOfTheFormatByteForByte) {
    const std::string path = add("A.TXT", "abc");
    ASSERT_EQ(archive(in()), success);
    const unsigned char golden[56] = {0xA7, 0x4F, 0xB0, 0xEF, 0xCD, 0x36, 0xB0, 0xEF, 0x05, 0x00, 0x00, 0x00,
                                      0xD2, 0xBD, 0xC7, 0xCB, 0xC7, 0xCD, 0x43, 0xB1, 0xEF, 0xCD, 0x32, 0xB2,
                                      0xEF, 0x03, 0x00, 0x00, 0x00, 0xCD, 0x23, 0xB3, 0xEF, 0xCD, 0x00, 0xB0,
                                      0xEF, 0x20, 0x00, 0x00, 0x00, 0xCD, 0x11, 0xB1, 0xEF, 0xCD, 0xDF, 0xBF,
                                      0xEF, 0xF2, 0xF1, 0xF0, 0xCD, 0xFD, 0xBD, 0xEF};
    EXPECT_EQ(readFile(target()), std::string(reinterpret_cast<const char*>(golden), sizeof golden));
    EXPECT_EQ(archiver->calls, (Calls{status(path), "slider 0 0"}));
    EXPECT_EQ(archiver->IsIOStarted(), 0);

    archiver->calls.clear();
    archiver->Archive();
    EXPECT_EQ(readFile(target()).size(), 56U) << "again, from the start";
}

TEST_F(ZarArchiveTest, NamesInATreeAreBelowTheFolder) {
    add("A.TXT", "a");
    add("DOS\\SUB\\B.TXT", "b", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    add("DOS\\C.TXT", "c");
    ASSERT_EQ(archive(in()), success);
    std::vector<std::string> names = namesIn(target());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Calls{"A.TXT", "DOS\\C.TXT", "DOS\\SUB\\B.TXT"}));
}

TEST_F(ZarArchiveTest, AListIsTakenInItsOrder) {
    const std::string a = add("a.txt", "a");
    const std::string b = add("sub\\b.txt", "b");
    struct Row {
        std::string list;
        Calls files;
    };
    for (const Row& row : {Row{b + "\r\n\r\n" + a, {b, a}}, Row{a + "\r\n" + b + "\r\n", {a, b}},
                           Row{"\r\n" + a + "\r\n\r\n", {a}}, Row{a, {a}}, Row{a + "\r\n" + a, {a, a}},
                           Row{"", {}}, Row{"\r\n", {}}}) {
        const std::string list = folder.file("list", row.list);
        ASSERT_EQ(archive(list), success);
        Calls expected;
        for (const std::string& file : row.files) {
            expected.push_back(status(file));
            expected.push_back("slider 0 0");
        }
        EXPECT_EQ(archiver->calls, expected);
        for (const std::string& name : namesIn(target())) {
            EXPECT_EQ(name.find(':'), std::string::npos) << name;
            EXPECT_NE(name.front(), '\\') << name;
        }
    }
}

TEST_F(ZarArchiveTest, AnEmptyFolderGivesAnEmptyArchive) {
    EXPECT_EQ(archive(in()), success);
    EXPECT_EQ(readFile(target()), "");
    EXPECT_TRUE(archiver->calls.empty());
}

TEST_F(ZarArchiveTest, WithoutAnArchiveFileNothingIsDone) {
    add("a", "a");
    Archiver unset;
    try {
        unset.Archive();
        ADD_FAILURE() << "archived";
    } catch (const UTILS::std_exception& thrown) {
        const std::string report = thrown.what();
        EXPECT_TRUE(report.starts_with("File:  zarlib\\zarlibsource\\zar_archive; Line Number:  ")) << report;
        EXPECT_TRUE(
            report.ends_with("; Exception Name:  class UTILS::std_exception; Type:  171; Error Condition:  "
                             "Archive Error!  Operation did not complete."))
            << report;
    }
    EXPECT_EQ(test::outcomeOf([&] { Archiver("", "", 1); }), test::archiveError);
}

TEST_F(ZarArchiveTest, WhatCannotBeOpenedOrWritten) {
    add("a", "a");
    const std::string list = folder.file("list", in("a") + "\r\n" + in("missing"));
    EXPECT_EQ(archive(list), openFailure);
    EXPECT_TRUE(DeleteFileA(target().c_str())) << "still open";
    folder.file("a.zar", "an old one");
    EXPECT_EQ(archive(in("no folder")), test::archiveError);
    EXPECT_EQ(readFile(target()), "an old one") << "is not replaced by nothing";
    archiver = std::make_unique<Archiver>(in().c_str(), (folder / "no\\such\\a.zar").c_str(), 0);
    EXPECT_EQ(test::outcomeWithoutError([&] { archiver->Archive(); }), openFailure);
}

TEST_F(ZarArchiveTest, AnEmptyFileEndsItWithTheWriteThatFollows) {
    add("empty", "");
    EXPECT_EQ(archive(in()), writeFailure);
    EXPECT_EQ(archiver->calls, (Calls{status(in("empty")), "slider 0 0"}));
    EXPECT_TRUE(DeleteFileA(target().c_str())) << "still open";
}

TEST_F(ZarArchiveTest, ACancelCanBeToldFromAFailure) {
    const std::string list =
        folder.file("list", add("a", "a") + "\r\n" + add("b", pattern(30000)) + "\r\n" + add("c", "c"));
    Archiver cancelled(list.c_str(), target().c_str(), 0);
    cancelled.cancelAtStatus = 2;
    EXPECT_EQ(test::outcomeOf([&] { cancelled.Archive(); }), test::cancelledArchiving);
    EXPECT_EQ(cancelled.calls, (Calls{status(in("a")), "slider 0 0", status(in("b"))}));
    EXPECT_EQ(cancelled.IsIOStarted(), 0);
    EXPECT_TRUE(DeleteFileA(target().c_str())) << "still open";
    EXPECT_EQ(test::outcomeOf([&] { cancelled.Archive(); }), success);
    EXPECT_EQ(namesIn(target()).size(), 3U);
}

TEST_F(ZarArchiveTest, RandomTreesComeBackAsTheyWere) {
    std::mt19937 random(test::randomSeed());
    const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
    for (int round = 0; round < 5; ++round) {
        const TempFolder tree;
        std::map<std::string, std::pair<std::string, DWORD>> files;
        for (std::uint32_t i = 0, count = 1 + below(40); i < count; ++i) {
            std::string name = "f" + std::to_string(i) + ".bin";
            for (std::uint32_t depth = below(4); depth > 0; --depth) {
                name = "d" + std::to_string(below(3)) + "\\" + name;
            }
            const std::size_t size = below(3) == 0 ? 8090 + below(10) : 1 + below(40000);
            // Only what every file system keeps.
            const DWORD attributes = below(2) == 0 ? FILE_ATTRIBUTE_ARCHIVE : FILE_ATTRIBUTE_READONLY;
            files[name] = {pattern(size, i), attributes};
            test::makeFile(tree, name, files[name].first, attributes);
        }
        ASSERT_EQ(archive(tree.path()), success);
        const TempFolder back;
        Extract_ZAR(target().c_str(), nullptr, back.path().c_str(), nullptr, 1, 0);
        EXPECT_EQ(test::filesBelow(back.path()).size(), files.size());
        for (const auto& [name, file] : files) {
            EXPECT_EQ(readFile(back / name), file.first) << name;
            EXPECT_EQ(GetFileAttributesA((back / name).c_str()) & file.second, file.second) << name;
        }
    }
}

TEST_F(ZarArchiveTest, ACopyArchivesTheSame) {
    add("a", "a");
    const Archiver original(in().c_str(), target().c_str(), 0);
    Archiver copy(original);
    copy.Archive();
    EXPECT_EQ(namesIn(target()), Calls{"a"});
    Archiver assigned;
    assigned = original;
    assigned.SetArchiveFile((folder / "b.zar").c_str());
    assigned.Archive();
    EXPECT_EQ(readFile(folder / "b.zar"), readFile(target()));
}

}  // namespace
