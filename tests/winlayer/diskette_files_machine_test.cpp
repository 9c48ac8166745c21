// Files, directories, names and the label of a diskette.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "support/diskette_files.h"
#include "support/diskette_machine.h"
#include "support/random_volume.h"

using winlayer::DisketteDrive;
using winlayer::FileFacts;
using Names = std::vector<std::string>;

namespace {

constexpr DWORD done = NO_ERROR;

class DisketteFiles : public testing::Test {
protected:
    DisketteMachine diskette;
    DisketteDrive& drive = diskette.drive();

    // First cluster of the n-th entry of the root.
    unsigned firstCluster(std::size_t n) {
        const auto entry = diskette.image().subspan(19 * winlayer::sectorSize + n * 32, 32);
        return std::to_integer<unsigned>(entry[26]) | std::to_integer<unsigned>(entry[27]) << 8;
    }
    DWORD attributes(const std::string& path) {
        FileFacts facts;
        EXPECT_EQ(drive.facts(path, facts), done) << path;
        return facts.attributes;
    }
};

}  // namespace

TEST_F(DisketteFiles, NamesAreUpperCaseOnTheDiskAndFoundWithoutCase) {
    ASSERT_EQ(writeWhole(drive, "Readme.1st", "text"), done);
    ASSERT_EQ(drive.createDirectory("sub dir"), done);
    ASSERT_EQ(writeWhole(drive, "SUB DIR\\x", "x"), done);
    EXPECT_EQ(namesIn(drive, ""), (Names{"README.1ST", "SUB DIR"}));
    EXPECT_EQ(namesIn(drive, "sub dir"), (Names{".", "..", "X"}));
    EXPECT_EQ(contentOf(drive, "rEADME.1sT"), "text");
    EXPECT_EQ(contentOf(drive, "sub DIR\\X"), "x");
    for (const char* const name :
         {"ninechars.txt", "a.text", "a.b.c", ".txt", "a.", "a+b", "a,b", "a[b", "a ", "a .b"}) {
        EXPECT_EQ(writeWhole(drive, name, ""), ERROR_INVALID_NAME) << name;
        EXPECT_EQ(openFile(drive, name, OPEN_EXISTING).error, ERROR_FILE_NOT_FOUND) << name;
    }
}

// On the disk lies code page 850; the first byte of a name must not look like that of a deleted entry.
TEST_F(DisketteFiles, LettersBeyondAsciiKeepTheirMeaning) {
    const std::string umlauts = "\xE4\xF6\xFC\xDF.\xC9";  // äöüß.É in code page 1252
    ASSERT_EQ(writeWhole(drive, umlauts, "umlauts"), done);
    ASSERT_EQ(writeWhole(drive, "\xD5.TXT", "tilde"), done);  // Õ, in code page 850 the deletion mark E5h
    const auto raw = diskette.image().subspan(19 * winlayer::sectorSize, 64);
    const auto bytes = [&](std::size_t at, std::size_t count) {
        return std::string(reinterpret_cast<const char*>(raw.data()) + at, count);
    };
    EXPECT_EQ(bytes(0, 11), "\x8E\x99\x9A\xE1    \x90  ");
    EXPECT_EQ(bytes(32, 11), "\x05       TXT");
    EXPECT_EQ(namesIn(drive, ""), (Names{"\xC4\xD6\xDC\xDF.\xC9", "\xD5.TXT"}));
    EXPECT_EQ(contentOf(drive, "\xC4\xF6\xDC\xDF.\xE9"), "umlauts");
    EXPECT_EQ(contentOf(drive, "\xF5.txt"), "tilde");
    EXPECT_EQ(drive.removeFile(umlauts), done);
}

// What RandomVolume's work does not ask.
TEST_F(DisketteFiles, TheRootAndDirectoriesAreNoFilesNorIsReadingWriting) {
    ASSERT_EQ(writeWhole(drive, "F", "kept"), done);
    ASSERT_EQ(drive.createDirectory("D"), done);
    for (const char* const path : {"D", ""}) {
        EXPECT_EQ(openFile(drive, path, OPEN_EXISTING, GENERIC_READ).error, ERROR_ACCESS_DENIED) << path;
    }
    EXPECT_EQ(drive.removeDirectory(""), ERROR_ACCESS_DENIED);
    EXPECT_EQ(drive.removeDirectory("C"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(namesIn(drive, "F"), (Names{"error 267"}));
    EXPECT_EQ(namesIn(drive, "C"), (Names{"error 3"}));
    ASSERT_EQ(drive.setAttributes("F", FILE_ATTRIBUTE_NORMAL), done);
    EXPECT_EQ(attributes("F"), FILE_ATTRIBUTE_NORMAL);
    const TestFile reading = openFile(drive, "G", CREATE_NEW, GENERIC_READ);
    EXPECT_EQ(reading->write(0, bytesOf("x")).error, ERROR_ACCESS_DENIED);
    EXPECT_EQ(reading->resize(1), ERROR_ACCESS_DENIED);
}

TEST_F(DisketteFiles, OpensThatDoNotShareExcludeEachOther) {
    ASSERT_EQ(writeWhole(drive, "F", "f"), done);
    {
        const TestFile reader = openFile(drive, "F", OPEN_EXISTING, GENERIC_READ, FILE_SHARE_READ);
        ASSERT_EQ(reader.error, done);
        EXPECT_EQ(openFile(drive, "F", OPEN_EXISTING, GENERIC_READ, FILE_SHARE_READ).error, done);
        EXPECT_EQ(openFile(drive, "F", OPEN_EXISTING, GENERIC_READ, 0).error, ERROR_SHARING_VIOLATION);
        EXPECT_EQ(openFile(drive, "F", CREATE_ALWAYS, GENERIC_WRITE, FILE_SHARE_READ).error,
                  ERROR_SHARING_VIOLATION);
        EXPECT_EQ(openFile(drive, "F", OPEN_EXISTING, 0, 0).error, done) << "asks for nothing";
        EXPECT_EQ(drive.removeFile("F"), ERROR_SHARING_VIOLATION);
        EXPECT_EQ(contentOf(drive, "F"), "error 32");
    }
    EXPECT_EQ(contentOf(drive, "F"), "f");
    EXPECT_EQ(drive.removeFile("F"), done);
}

TEST_F(DisketteFiles, FilesWrittenOneAfterAnotherAreEachOneRun) {
    for (const char* const name : {"A", "B", "C"}) {
        const TestFile file = openFile(drive, name, CREATE_NEW);
        for (std::uint64_t at = 0; at < 30'000; at += 8094) {
            ASSERT_EQ(file->write(at, bytesOf(std::string(8094, name[0]))).error, done);
        }
    }
    const unsigned clusters = (4 * 8094 + 511) / 512;
    EXPECT_EQ(firstCluster(0), 2U);
    EXPECT_EQ(firstCluster(1), 2 + clusters);
    EXPECT_EQ(firstCluster(2), 2 + 2 * clusters);
    const auto content = diskette.image().subspan((33 + clusters) * 512, 4 * 8094);
    EXPECT_TRUE(std::all_of(content.begin(), content.end(), [](std::byte b) { return b == std::byte{'B'}; }));

    // What was freed is taken again from its start, also by the next after one that failed.
    ASSERT_EQ(drive.removeFile("A"), done);
    {
        const TestFile file = openFile(drive, "C", OPEN_EXISTING);
        winlayer::DisketteState state;
        state.faults.push_back(
            {10, winlayer::SectorFault::Kind::WriteFails, ERROR_CRC, 1});  // the second FAT
        drive.setState(state);
        EXPECT_EQ(file->write(40'000, bytesOf("x")).error, ERROR_CRC);
    }
    ASSERT_EQ(writeWhole(drive, "D", std::string(100, 'd')), done);
    EXPECT_EQ(firstCluster(0), 2U);
}

TEST_F(DisketteFiles, AFullDiskTakesWhatFitsAndSaysSo) {
    const std::size_t room = std::size_t{2847} * 512;
    {
        const TestFile file = openFile(drive, "BIG", CREATE_NEW);
        const winlayer::Transfer written = file->write(0, bytesOf(std::string(room + 700, 'b')));
        EXPECT_EQ(written.count, room);
        EXPECT_EQ(written.error, ERROR_DISK_FULL);
        EXPECT_EQ(file->write(room, bytesOf("x")).error, ERROR_DISK_FULL);
        EXPECT_EQ(file->write(1ULL << 40, bytesOf("x")).error, ERROR_DISK_FULL);
        EXPECT_EQ(file->resize(room + 1), ERROR_DISK_FULL);
        EXPECT_EQ(file->write(room - 1, bytesOf("x")).error, done) << "inside is room";
    }
    EXPECT_EQ(contentOf(drive, "BIG"), std::string(room - 1, 'b') + 'x');
    EXPECT_EQ(freeClusters(diskette.image()), 0U);
    EXPECT_EQ(drive.createDirectory("D"), ERROR_DISK_FULL);
    EXPECT_EQ(writeWhole(drive, "EMPTY", ""), done);
    EXPECT_EQ(drive.removeFile("BIG"), done);
    EXPECT_EQ(freeClusters(diskette.image()), 2847U);
}

TEST_F(DisketteFiles, TheRootHoldsItsEntriesAndADirectoryGrows) {
    ASSERT_EQ(drive.setLabel("FULL"), done);
    ASSERT_EQ(drive.createDirectory("D"), done);
    for (int i = 0; i < 222; ++i) {
        ASSERT_EQ(writeWhole(drive, "F" + std::to_string(i), ""), done);
    }
    EXPECT_EQ(writeWhole(drive, "ONEMORE", ""), ERROR_CANNOT_MAKE);
    EXPECT_EQ(drive.createDirectory("ONEMORE"), ERROR_CANNOT_MAKE);
    EXPECT_EQ(freeClusters(diskette.image()), 2846U) << "a refused directory keeps no cluster";
    EXPECT_EQ(drive.setLabel("OTHER"), done);
    for (int i = 0; i < 300; ++i) {
        ASSERT_EQ(writeWhole(drive, "D\\F" + std::to_string(i), ""), done);
    }
    EXPECT_EQ(namesIn(drive, "D").size(), 302U);
    EXPECT_EQ(freeClusters(diskette.image()), 2847U - (302 + 15) / 16);
    ASSERT_EQ(drive.removeFile("F5"), done);
    EXPECT_EQ(writeWhole(drive, "ONEMORE", ""), done);
}

TEST_F(DisketteFiles, TheLabelIsARootEntryAndTheBootSectorStaysAsItIs) {
    const std::vector<std::byte> boot(diskette.image().begin(), diskette.image().begin() + 512);
    winlayer::VolumeFacts volume;
    const auto label = [&] {
        EXPECT_EQ(drive.volume(volume), done);
        return volume.label;
    };
    EXPECT_EQ(label(), "");
    EXPECT_EQ(volume.serial, DisketteMachine::serial);
    EXPECT_EQ(drive.setLabel("Quarvel"), done);
    EXPECT_EQ(label(), "QUARVEL");
    EXPECT_EQ(drive.setLabel("two words"), done);
    EXPECT_EQ(label(), "TWO WORDS");
    EXPECT_EQ(namesIn(drive, ""), Names{}) << "the label is no file";
    EXPECT_EQ(drive.setLabel("TWELVE CHARS"), ERROR_LABEL_TOO_LONG);
    for (const char* const text : {"A.B", "A*B", "A/B", " A", "A\tB"}) {
        EXPECT_EQ(drive.setLabel(text), ERROR_INVALID_NAME) << text;
    }
    EXPECT_EQ(label(), "TWO WORDS");
    EXPECT_EQ(drive.setLabel(""), done);
    EXPECT_EQ(label(), "");
    EXPECT_TRUE(std::equal(boot.begin(), boot.end(), diskette.image().begin()));
}

TEST_F(DisketteFiles, TimesAreThoseOfTheClockInStepsOfTwoSeconds) {
    drive.setClock([] { return std::time_t{1'000'000'003}; });
    ASSERT_EQ(writeWhole(drive, "F", "f"), done);
    drive.setClock([] { return std::time_t{0}; });  // before a diskette's time begins
    ASSERT_EQ(writeWhole(drive, "OLD", "f"), done);
    const auto seconds = [&](const std::string& path) {
        FileFacts facts;
        EXPECT_EQ(drive.facts(path, facts), done);
        const auto steps = std::uint64_t{facts.written.dwHighDateTime} << 32 | facts.written.dwLowDateTime;
        return static_cast<std::int64_t>(steps / 10'000'000) - 11'644'473'600;
    };
    EXPECT_EQ(seconds("F"), 1'000'000'002);
    std::tm firstDay{};
    firstDay.tm_year = 80;
    firstDay.tm_mday = 1;
    firstDay.tm_isdst = -1;
    EXPECT_EQ(seconds("OLD"), std::mktime(&firstDay));

    // A change sets the time and the archive attribute.
    drive.setClock([] { return std::time_t{1'100'000'000}; });
    const std::function<DWORD(winlayer::OpenFile&)> changes[] = {
        [](winlayer::OpenFile& file) { return file.write(0, bytesOf("x")).error; },
        [](winlayer::OpenFile& file) { return file.resize(0); }};
    for (const auto& change : changes) {
        ASSERT_EQ(writeWhole(drive, "CHANGED", "text"), done);
        drive.setClock([] { return std::time_t{1'200'000'000}; });
        ASSERT_EQ(drive.setAttributes("CHANGED", FILE_ATTRIBUTE_NORMAL), done);
        EXPECT_EQ(seconds("CHANGED"), 1'100'000'000) << "attributes are no change";
        EXPECT_EQ(change(*openFile(drive, "CHANGED", OPEN_EXISTING).file), done);
        EXPECT_EQ(seconds("CHANGED"), 1'200'000'000);
        EXPECT_EQ(attributes("CHANGED"), FILE_ATTRIBUTE_ARCHIVE);
        drive.setClock([] { return std::time_t{1'100'000'000}; });
    }
}

// Another diskette of the same shape must not be taken for the one on which a file was opened.
TEST_F(DisketteFiles, FilesDoNotSurviveAChangeOfDiskette) {
    ASSERT_EQ(writeWhole(drive, "F", "first"), done);
    const TestFile file = openFile(drive, "F", OPEN_EXISTING);
    const auto medium = drive.eject();
    EXPECT_EQ(file->write(0, bytesOf("x")).error, ERROR_NOT_READY);
    auto other = std::make_unique<winlayer::MemoryStore>();
    ASSERT_EQ(winlayer::formatDiskette(*other, 1), done);
    drive.insert(std::move(other));
    ASSERT_EQ(writeWhole(drive, "F", "second"), done);
    EXPECT_EQ(file->write(0, bytesOf("x")).error, ERROR_FILE_INVALID);
    EXPECT_EQ(contentOf(drive, "F"), "second");
}
