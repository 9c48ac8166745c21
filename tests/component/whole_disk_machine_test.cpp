// The wizard's diskette at the end of a day with obstacles: the same as the disk maker's own, byte by byte,
// and one that starts a PC.
#include <gtest/gtest.h>

#include "FormatDiskLib/qemu_boot.h"
#include "wizard_fixture.h"
#include "wizard_machine.h"

namespace {

using winlayer::WindowsVersion;

// With a loader that ends the emulated PC.
std::vector<test::ZarFile> filesThatStart() {
    std::vector<test::ZarFile> files = emergencyFiles();
    const auto loader = builtSample("exit_loader.bin");
    files[2].data.assign(loader.begin(), loader.end());
    return files;
}

class WholeDisk : private WizardMachine,
                  public WizardTest,
                  public testing::WithParamInterface<WindowsVersion> {
protected:
    WholeDisk() : WizardMachine(GetParam()) {
        pc.writeArchive(filesThatStart());
        pc.putOldFiles();
        start_ = pc.snapshot();
        RecordingDiskMaker maker;
        maker.configure(pc.archiveFolder());
        EXPECT_EQ(maker.FindFloppyDrive(), 1);
        EXPECT_EQ(maker.MakeDisk(), 1);
        expected_ = withoutSerialNumber();
        pc.restore(start_);
        goToFloppy();
    }

    using WizardMachine::pc;

    void protect(bool on) {
        winlayer::DisketteState state;
        state.writeProtected = on;
        pc.drive().setState(state);
    }
    std::vector<std::byte> withoutSerialNumber() {
        EXPECT_EQ(pc.drive().settle(), DWORD{NO_ERROR});
        auto image = pc.snapshot();
        std::fill_n(image.begin() + boot_sector::serialNumberAt, 4, std::byte{0});
        return image;
    }
    // Takes the drive away for one press of Next.
    void pressWithoutDrive() {
        auto& drives = pc.machine().drives;
        const auto drive = drives.find('A')->files;
        drives.unmount('A');
        press(wizard::nextCommand);
        EXPECT_EQ(hostLog.count("box Systemfehler [30] Kein geeignetes Diskettenlaufwerk gefunden."), 1);
        drives.mount('A', drive, DRIVE_REMOVABLE);
    }
    void expectWholeDisk() {
        EXPECT_EQ(floppy().State(), PageState::Made);
        EXPECT_EQ(pc.faultOfDiskette(filesThatStart()), "");
        EXPECT_TRUE(withoutSerialNumber() == expected_) << "not the disk maker's diskette";
    }

    std::vector<std::byte> start_;
    std::vector<std::byte> expected_;
};

INSTANTIATE_TEST_SUITE_P(Windows, WholeDisk, testing::Values(WindowsVersion::Windows98, WindowsVersion::XP),
                         familyName);

TEST_P(WholeDisk, IsTheDiskMakersOwnAfterEveryObstacle) {
    pressWithoutDrive();
    protect(true);
    hostLog.duringBox = [this] { protect(false); };
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count("box CBSTR DEFAULT PRODUCT NAME [1]"), 1);
    hostLog.duringBox = nullptr;
    expectWholeDisk();
    const DWORD firstSerialNumber = pc.serialNumber();
    press(wizard::finishCommand);
    press(wizard::nextCommand);
    hostLog.duringStatus = [this](const std::string& status) {
        if (status.starts_with("Die Datei QZLOADER.BIN"))
            PostMessageA(frame.page(), WM_COMMAND, wizard::backCommand, 0);
    };
    press(wizard::nextCommand);
    hostLog.duringStatus = nullptr;
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::optionsPage) << "stopped";
    pc.restore(start_);
    press(wizard::nextCommand);
    press(wizard::nextCommand);
    expectWholeDisk();
    EXPECT_EQ(pc.serialNumber(), firstSerialNumber) << "drawn once for a page";
}

TEST_P(WholeDisk, StartsAPC) {
    REQUIRE_TOOLS("qemu-system-i386");
    press(wizard::nextCommand);
    const std::span<std::byte> image = pc.image();
    const ToolRun run = bootInQemu({reinterpret_cast<const unsigned char*>(image.data()), image.size()});
    EXPECT_EQ(run.status, exitOfTestLoader) << run.output;
    EXPECT_NE(run.output.find("QZLOADER started"), std::string::npos) << run.output;
}

}  // namespace
