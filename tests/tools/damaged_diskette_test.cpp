#include <gtest/gtest.h>

#include <filesystem>

#include "tests/tools/sample_disk.h"
#include "tools/common/exit_code.h"
#include "tools/emergency_disk/commands.h"
#include "tools/emergency_disk/disk_plan.h"
#include "tools/emergency_disk/diskette.h"
#include "tools/emergency_disk/erasing.h"
#include "tools/emergency_disk/inspection.h"
#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/machine.h"

// Whatever a single sector of the diskette does wrong, `make` never reports success for a diskette that does
// not read back.

namespace {

namespace fs = std::filesystem;
using namespace tools;

class DamagedDiskette : public ::testing::Test {
protected:
    // The exit code of one run on a fresh image whose drive is in the given state.
    ExitCode makeDisk(const std::string& state) {
        fs::remove(image());
        emergency_disk::MakeOptions options;
        options.target.image = image().string();
        options.archive = disk_.archive().string();
        options.simulate = state;
        Console console("test", true);
        JsonWriter result;
        Session session{console, true, result};
        try {
            emergency_disk::make(options, session);
        } catch (const Problem& problem) {
            return problem.code();
        }
        return ExitCode::success;
    }

    // Whether what lies in the image is the whole diskette, by a fresh look at its bytes.
    bool readsBack() {
        const emergency_disk::DiskPlan plan = emergency_disk::readPlan(disk_.archive().string());
        const std::string label = "QUARVEL";
        const auto diskette = emergency_disk::openForReading({image().string(), {}});
        return emergency_disk::inspect(*diskette, {&plan, &label}).passed();
    }

    fs::path image() const { return disk_.folder() / "disk.img"; }

    SampleDisk disk_;
};

class DamagedSector : public DamagedDiskette,
                      public ::testing::WithParamInterface<std::tuple<const char*, unsigned>> {
protected:
    static constexpr unsigned shards = 4;
};

TEST_P(DamagedSector, NeverYieldsAFalseSuccess) {
    const auto [fault, shard] = GetParam();
    unsigned failures = 0;
    for (unsigned sector = shard; sector < winlayer::sectors1440; sector += shards) {
        const ExitCode code = makeDisk(std::string(fault) + "=" + std::to_string(sector));
        if (code == ExitCode::success) {
            ASSERT_TRUE(readsBack()) << fault << " at sector " << sector;
        } else {
            ++failures;
            ASSERT_TRUE(code == ExitCode::mediumError || code == ExitCode::verificationFailed ||
                        code == ExitCode::noDiskette)
                << fault << " at sector " << sector << " ended with " << static_cast<int>(code);
            ASSERT_FALSE(fs::exists(image())) << fault << " at sector " << sector << " left an image behind";
        }
    }
    // Two FATs, the root directory's first sector, the boot sector and the files: a fault there must have
    // been seen.
    EXPECT_GE(failures, 4U);
}

// A view of a diskette in which one sector cannot be read.
class ViewWithBadSector : public emergency_disk::DisketteView {
public:
    ViewWithBadSector(emergency_disk::DisketteView& sound, DWORD bad) : sound_(sound), bad_(bad) {}

    DWORD settle() override { return sound_.settle(); }
    DWORD readSectors(DWORD first, std::span<std::byte> buffer) override {
        const bool meets = bad_ >= first && bad_ - first < buffer.size() / winlayer::sectorSize;
        return meets ? ERROR_CRC : sound_.readSectors(first, buffer);
    }
    DWORD fats(Fats& fats) override { return sound_.fats(fats); }
    DWORD label(std::string& label) override { return sound_.label(label); }
    DWORD file(const std::string& name, File& file) override { return sound_.file(name, file); }
    DWORD readFile(const std::string& name, std::vector<unsigned char>& contents) override {
        return sound_.readFile(name, contents);
    }

private:
    emergency_disk::DisketteView& sound_;
    DWORD bad_;
};

TEST_F(DamagedDiskette, ABadSectorFoundWhenReadingBackIsAMediumError) {
    ASSERT_EQ(makeDisk(""), ExitCode::success);
    const auto diskette = emergency_disk::openForReading({image().string(), {}});
    for (const DWORD sector : {0U, 12U, 30U, 35U}) {  // boot sector, second FAT, root directory, loader
        ViewWithBadSector view(*diskette, sector);
        const auto inspection = emergency_disk::inspect(view, {});
        ASSERT_NE(inspection.fault(), nullptr) << sector;
        EXPECT_EQ(inspection.fault()->code, ExitCode::mediumError) << inspection.fault()->sentence;
    }
}

TEST(Erasing, NamesTheEntryAtWhichItStopped) {
    winlayer::ScopedMachine machine;
    auto medium = std::make_unique<winlayer::MemoryStore>();
    winlayer::formatDiskette(*medium, 1);
    machine->drives.mount('A', winlayer::DisketteDrive::make(std::move(medium)), DRIVE_REMOVABLE);
    ASSERT_TRUE(CreateDirectoryA("A:\\OUTER", nullptr) && CreateDirectoryA("A:\\OUTER\\KEPT", nullptr));
    ASSERT_TRUE(SetFileAttributesA("A:\\OUTER\\KEPT", FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(emergency_disk::erasingStoppedAt("A:\\").find("A:\\OUTER\\KEPT could not be deleted: "), 0U);
}

INSTANTIATE_TEST_SUITE_P(EverySector, DamagedSector,
                         ::testing::Combine(::testing::Values("bad-sector", "bad-write", "lost-write"),
                                            ::testing::Range(0U, 4U)),
                         [](const auto& row) {
                             std::string name = std::get<0>(row.param);
                             name.erase(name.find('-'), 1);
                             return name + std::to_string(std::get<1>(row.param));
                         });

}  // namespace
