// Where a diskette's sectors live: image files and block devices of the host.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "support/diskette_files.h"
#include "support/host_directory_machine.h"
#include "support/outside_tools.h"
#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/diskette/host_store.h"

using winlayer::DisketteDrive;
using winlayer::SectorStore;
using Store = std::unique_ptr<SectorStore>;

namespace {

namespace fs = std::filesystem;
constexpr DWORD done = NO_ERROR;

class DisketteMedia : public testing::Test {
protected:
    const HostDirectory folder;
    const fs::path image = folder / "diskette.img";

    void makeImage(std::uintmax_t bytes) {
        std::ofstream(image, std::ios::binary).close();
        fs::resize_file(image, bytes);
    }
};

// A block device over an image file; without a name where none can be made.
class LoopDevice {
public:
    explicit LoopDevice(const fs::path& file, const std::string& option = "-P") {
        const ToolRun made = runTool({"losetup", option, "-f", "--show", file.string()});
        name = made.status == 0 ? made.output.substr(0, made.output.find('\n')) : "";
    }
    ~LoopDevice() {
        if (!name.empty()) {
            EXPECT_EQ(runTool({"losetup", "-d", name}).status, 0);
        }
    }
    LoopDevice(const LoopDevice&) = delete;
    LoopDevice& operator=(const LoopDevice&) = delete;

    std::string name;
};

}  // namespace

TEST_F(DisketteMedia, AnImageIsMadeOnceAndKeepsWhatIsWritten) {
    Store store;
    ASSERT_EQ(winlayer::createImage(image, winlayer::sectors1440, store), done);
    EXPECT_EQ(winlayer::createImage(image, winlayer::sectors1440, store), ERROR_FILE_EXISTS);
    EXPECT_EQ(fs::file_size(image), 1'474'560U);
    ASSERT_EQ(winlayer::formatDiskette(*store, 1), done);
    {
        const auto drive = DisketteDrive::make(std::move(store));
        ASSERT_EQ(writeWhole(*drive, "F", "kept"), done);
        EXPECT_EQ(drive->settle(), done);
    }
    ASSERT_EQ(winlayer::openImage(image, store), done);
    EXPECT_EQ(store->sectors(), 2880U);
    EXPECT_EQ(contentOf(*DisketteDrive::make(std::move(store)), "F"), "kept");
    EXPECT_EQ(fs::file_size(image), 1'474'560U);
}

TEST_F(DisketteMedia, OnlyTheSizesOfADisketteAreTaken) {
    Store store;
    EXPECT_EQ(winlayer::openImage(image, store), ERROR_FILE_NOT_FOUND);
    for (const std::uintmax_t bytes : {0u, 512u, 1'474'559u, 1'474'561u, 1'474'048u, 2'949'120u}) {
        makeImage(bytes);
        EXPECT_EQ(winlayer::openImage(image, store), ERROR_UNRECOGNIZED_MEDIA) << bytes;
    }
    EXPECT_EQ(winlayer::openImage(folder.path(), store), ERROR_ACCESS_DENIED);
    EXPECT_EQ(winlayer::openImage("/dev/null", store), ERROR_UNRECOGNIZED_MEDIA);
    makeImage(737'280);
    EXPECT_EQ(winlayer::openImage(image, store), done);
    EXPECT_EQ(store->sectors(), 1440U);
    EXPECT_EQ(winlayer::openBlockDevice(image, store), ERROR_BAD_DEVICE);
    EXPECT_EQ(winlayer::openBlockDevice("/dev/null", store), ERROR_BAD_DEVICE);
}

TEST_F(DisketteMedia, AnImageThatIsCutShortFailsToRead) {
    makeImage(1'474'560);
    Store store;
    ASSERT_EQ(winlayer::openImage(image, store), done);
    fs::resize_file(image, 100 * 512 + 100);
    std::vector<std::byte> sector(512);
    EXPECT_EQ(store->read(99, sector), done);
    EXPECT_EQ(store->read(100, sector), ERROR_SECTOR_NOT_FOUND);
    EXPECT_EQ(store->read(2880, sector), ERROR_SECTOR_NOT_FOUND);
    EXPECT_EQ(store->write(2880, sector), ERROR_SECTOR_NOT_FOUND);
}

TEST_F(DisketteMedia, AnImageThatNobodyMayWriteIsWriteProtected) {
    Store store;
    ASSERT_EQ(winlayer::createImage(image, winlayer::sectors1440, store), done);
    ASSERT_EQ(winlayer::formatDiskette(*store, 1), done);
    store.reset();
    // Whoever runs as the system's administrator may write everything, and so becomes somebody else for a
    // while.
    fs::permissions(image, static_cast<fs::perms>(0444));
    fs::permissions(folder.path(), static_cast<fs::perms>(0755));
    const uid_t user = ::geteuid();
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(::seteuid(user == 0 ? nobody : user), 0);
    const DWORD error = winlayer::openImage(image, store);
    ASSERT_EQ(::seteuid(user), 0);
    ASSERT_EQ(error, done);
    EXPECT_TRUE(store->writeProtected());
    EXPECT_EQ(writeWhole(*DisketteDrive::make(std::move(store)), "F", "f"), ERROR_WRITE_PROTECT);
}

// A loop device stands for the real drive. Only the system's administrator can make one.
TEST_F(DisketteMedia, ABlockDeviceIsOpenedAlone) {
    REQUIRE_TOOLS("losetup");
    makeImage(1'474'560);
    {
        const LoopDevice device(image);
        if (device.name.empty()) {
            GTEST_SKIP() << "no loop device can be made";
        }
        Store store;
        Store second;
        ASSERT_EQ(winlayer::openBlockDevice(device.name, store), done);
        EXPECT_EQ(store->sectors(), 2880U);
        EXPECT_EQ(winlayer::openBlockDevice(device.name, second), ERROR_BUSY);
        ASSERT_EQ(winlayer::formatDiskette(*store, 1), done);
        const auto drive = DisketteDrive::make(std::move(store));
        EXPECT_EQ(writeWhole(*drive, "F", "on a device"), done);
        EXPECT_EQ(drive->settle(), done);
        EXPECT_EQ(contentOf(*drive, "F"), "on a device");
    }
    {
        const LoopDevice device(image, "-r");
        Store store;
        ASSERT_EQ(winlayer::openBlockDevice(device.name, store), done);
        EXPECT_TRUE(store->writeProtected());
    }
    makeImage(737'280);
    const LoopDevice device(image);
    Store store;
    EXPECT_EQ(winlayer::openBlockDevice(device.name, store), ERROR_UNRECOGNIZED_MEDIA);
}
