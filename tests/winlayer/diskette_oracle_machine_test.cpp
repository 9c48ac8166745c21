// Diskettes that this drive has written, read by others; diskettes that others have written, read by this
// drive.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/diskette_files.h"
#include "support/host_directory_machine.h"
#include "support/outside_tools.h"
#include "support/random_volume.h"
#include "winlayer/diskette/host_store.h"

namespace {

namespace fs = std::filesystem;
using winlayer::DisketteDrive;

void save(const fs::path& file, std::span<const std::byte> image) {
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(image.data()), static_cast<std::streamsize>(image.size()));
}

std::string load(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

// The checker also wants the label in the boot sector, which setting a label leaves as it is: this one remark
// is right.
void expectSound(const fs::path& image, const std::string& label) {
    const ToolRun run = runTool({"fsck.fat", "-n", image.string()});
    std::istringstream lines(run.output);
    std::vector<std::string> remarks;
    for (std::string line; std::getline(lines, line);) {
        const bool expected = line.rfind("fsck.fat 4", 0) == 0 ||
                              line.find(" clusters") != std::string::npos || line.empty() ||
                              line == "Leaving filesystem unchanged.";
        const bool aboutLabel =
            !label.empty() && (line.rfind("There is no label in boot sector, but", 0) == 0 ||
                               line.rfind("  Auto-copying volume label", 0) == 0);
        if (!expected && !aboutLabel) {
            remarks.push_back(line);
        }
    }
    EXPECT_TRUE(remarks.empty()) << run.output;
    EXPECT_EQ(run.status, label.empty() ? 0 : 1) << run.output;
}

// Contents and shape as mcopy reads them.
RandomVolume::Picture copiedPicture(const fs::path& folder) {
    RandomVolume::Picture picture;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        std::string path = fs::relative(entry.path(), folder).string();
        std::replace(path.begin(), path.end(), '/', '\\');
        picture[path] = {entry.is_directory(), entry.is_directory() ? "" : load(entry.path()), 0};
    }
    return picture;
}

// Attributes as mattrib lists them: letters in fixed columns, then the path from the ninth column on.
void addAttributes(const std::string& listing, RandomVolume::Picture& picture) {
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t start = line.find("::/");
        if (start == std::string::npos || start + 3 == line.size()) {
            continue;
        }
        std::string path = line.substr(start + 3);
        std::replace(path.begin(), path.end(), '/', '\\');
        const std::string letters = line.substr(0, start);
        const auto bit = [&](char letter, DWORD value) {
            return letters.find(letter) == std::string::npos ? 0 : value;
        };
        ASSERT_EQ(picture.count(path), 1U) << line;
        picture[path].attributes = bit('A', FILE_ATTRIBUTE_ARCHIVE) | bit('S', FILE_ATTRIBUTE_SYSTEM) |
                                   bit('H', FILE_ATTRIBUTE_HIDDEN) | bit('R', FILE_ATTRIBUTE_READONLY);
    }
}

void expectSame(const RandomVolume::Picture& found, const RandomVolume::Picture& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (const auto& [path, node] : expected) {
        const auto other = found.find(path);
        ASSERT_NE(other, found.end()) << path;
        EXPECT_EQ(other->second.directory, node.directory) << path;
        EXPECT_EQ(other->second.attributes, node.attributes) << path;
        EXPECT_TRUE(other->second.content == node.content) << path << " differs";
    }
}

void readOutside(const RandomVolume& volume) {
    const HostDirectory folder;
    const std::string image = (folder / "volume.img").string();
    save(image, volume.image());
    expectSound(image, volume.label());

    const fs::path copies = folder / "copies";
    fs::create_directory(copies);
    const ToolRun copied = runTool({"mcopy", "-s", "-n", "-i", image, "::", copies.string()});
    RandomVolume::Picture outside = copiedPicture(copies);
    addAttributes(runTool({"mattrib", "-/", "-i", image, "::"}).output, outside);
    expectSame(outside, volume.picture());
    if (testing::Test::HasFailure()) {
        FAIL() << copied.output;
    }

    const std::string label = runTool({"mlabel", "-s", "-i", image, "::"}).output;
    const std::string expected = volume.label().empty() ? "has no label" : "is " + volume.label();
    EXPECT_NE(label.find(expected), std::string::npos) << label;
}

unsigned numberFrom(const char* variable, unsigned otherwise) {
    const char* const text = std::getenv(variable);
    return text == nullptr ? otherwise : static_cast<unsigned>(std::stoul(text));
}

}  // namespace

// DISKETTE_VOLUMES and DISKETTE_SEED ask for other volumes than these two hundred.
TEST(DisketteOracle, WhatThisDriveWritesOthersRead) {
    REQUIRE_TOOLS("fsck.fat", "mcopy", "mattrib", "mlabel");
    const unsigned volumes = numberFrom("DISKETTE_VOLUMES", 200);
    const unsigned firstSeed = numberFrom("DISKETTE_SEED", static_cast<unsigned>(std::random_device()()));
    std::cout << "seed " << firstSeed << ", " << volumes << " volumes\n";
    for (unsigned i = 0; i < volumes; ++i) {
        SCOPED_TRACE("DISKETTE_VOLUMES=1 DISKETTE_SEED=" + std::to_string(firstSeed + i));
        RandomVolume volume(firstSeed + i);
        volume.work(40 + i % 200);
        ASSERT_EQ(volume.drive().settle(), NO_ERROR);
        expectSame(pictureOf(volume.drive()), volume.picture());
        readOutside(volume);
        if (HasFailure()) {
            return;
        }
    }
}

// Long names, fragments, deleted entries, subdirectories and hidden files, in each size that the drive takes.
TEST(DisketteOracle, WhatOthersWriteThisDriveReads) {
    REQUIRE_TOOLS("fsck.fat", "mformat", "mcopy", "mdel", "mmd", "mattrib", "mlabel", "mdir");
    for (const char* const size : {"1440", "720"}) {
        const HostDirectory folder;
        const std::string image = (folder / "made.img").string();
        ASSERT_EQ(runTool({"mformat", "-C", "-f", size, "-v", "MADE", "-i", image, "::"}).status, 0);
        const auto put = [&](const std::string& name, std::size_t bytes, const std::string& to) {
            std::ofstream(folder / name, std::ios::binary) << std::string(bytes, name[0]);
            ASSERT_EQ(runTool({"mcopy", "-i", image, (folder / name).string(), "::" + to}).status, 0);
        };
        put("a.txt", 5000, "/a.txt");
        put("hole.txt", 3000, "/hole.txt");
        put("b.txt", 700, "/b.txt");
        ASSERT_EQ(runTool({"mdel", "-i", image, "::/hole.txt"}).status, 0);
        put("fragments.bin", 9000, "/frag.bin");
        ASSERT_EQ(runTool({"mmd", "-i", image, "::/sub", "::/sub/deep"}).status, 0);
        put("deep.txt", 1, "/sub/deep/deep.txt");
        put("A name that is much too long for eight and three.text", 1234, "/sub/");
        put("Zweiter langer Name mit anderem Anfang.text", 4321, "/");
        ASSERT_EQ(runTool({"mattrib", "+r", "+h", "-a", "-i", image, "::/b.txt"}).status, 0);

        std::unique_ptr<winlayer::SectorStore> store;
        ASSERT_EQ(winlayer::openImage(image, store), NO_ERROR);
        const auto drive = DisketteDrive::make(std::move(store));
        winlayer::VolumeFacts volume;
        ASSERT_EQ(drive->volume(volume), NO_ERROR);
        EXPECT_EQ(volume.label, "MADE");
        const RandomVolume::Picture picture = pictureOf(*drive);
        ASSERT_EQ(picture.size(), 8U);
        EXPECT_EQ(picture.at("A.TXT").content, std::string(5000, 'a'));
        EXPECT_EQ(picture.at("B.TXT").content, std::string(700, 'b'));
        EXPECT_EQ(picture.at("B.TXT").attributes, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
        EXPECT_EQ(picture.at("FRAG.BIN").content, std::string(9000, 'f'));
        EXPECT_EQ(picture.at("SUB\\DEEP\\DEEP.TXT").content, "d");
        EXPECT_EQ(picture.at("SUB\\ANAMET~1.TEX").content, std::string(1234, 'A'));
        EXPECT_EQ(picture.at("ZWEITE~1.TEX").content, std::string(4321, 'Z'));

        // A long name's entries go with their file; others find the directory sound afterwards.
        EXPECT_EQ(drive->removeFile("sub\\anamet~1.tex"), NO_ERROR);
        EXPECT_EQ(drive->removeFile("zweite~1.tex"), NO_ERROR);
        EXPECT_EQ(writeWhole(*drive, "new.txt", "new"), NO_ERROR);
        expectSound(image, "");
        const std::string listing = runTool({"mdir", "-/", "-a", "-b", "-i", image, "::"}).output;
        EXPECT_EQ(
            listing,
            "::/a.txt\n::/frag.bin\n::/b.txt\n::/sub/\n::/NEW.TXT\n::/sub/deep/\n::/sub/deep/deep.txt\n");
    }
}
