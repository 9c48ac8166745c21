#include "format_disk.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "FormatDiskLib/disk_maker_machine.h"
#include "ansi_literal.h"
#include "support/temp_folder_machine.h"

namespace {

using namespace UTILS::literals;
using winlayer::WindowsVersion;
using Events = RecordingDiskMaker::Events;

constexpr MediaGeometry wanted{80, 2, 18, 512, F3_1Pt44_512};

class BothFamilies : public testing::TestWithParam<WindowsVersion> {
protected:
    std::shared_ptr<winlayer::DisketteDrive> mountDrive(char letter, bool lowDensity) {
        auto medium = std::make_unique<winlayer::MemoryStore>(lowDensity ? winlayer::sectors720
                                                                         : winlayer::sectors1440);
        EXPECT_EQ(winlayer::formatDiskette(*medium, 1), DWORD{NO_ERROR});
        auto drive = winlayer::DisketteDrive::make(std::move(medium));
        winlayer::DisketteState state;
        state.lowDensityDrive = lowDensity;
        drive->setState(state);
        pc.machine().drives.mount(letter, drive, DRIVE_REMOVABLE);
        return drive;
    }

    DiskMakerMachine pc{GetParam()};
    const bool nt = winlayer::isNt(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Windows, BothFamilies,
                         testing::Values(WindowsVersion::Windows98, WindowsVersion::XP), familyName);

TEST_P(BothFamilies, FindTheDriveAndTellItsGeometry) {
    RecordingDiskMaker maker;
    EXPECT_STREQ(maker.GetFirstDriveOfType(wanted), "A:\\");
    EXPECT_EQ(maker.takeEvents(), (Events{"Diskettenlaufwerke werden gesucht...", "Laufwerk A: gefunden"}));
    EXPECT_EQ(maker.driveGeometry_, wanted);
    EXPECT_STREQ(maker.devicePath_.c_str(), nt ? "\\\\.\\A:" : "\\\\.\\VWIN32");
    EXPECT_EQ(maker.writeSize_, 512);
    EXPECT_TRUE(maker.IsOpen());
    EXPECT_EQ(maker.driveList_.GetNumberOfStrings(), 0U);
    if (!nt) {
        EXPECT_EQ(maker.input_.reg_EAX, 0x440DU);
        EXPECT_EQ(maker.input_.reg_EBX, 1U);
        EXPECT_EQ(maker.input_.reg_ECX, 0x0860U);
    }
}

TEST_P(BothFamilies, WithoutADriveEndTheScanBeforeItBegins) {
    pc.machine().drives.unmount('A');
    RecordingDiskMaker maker;
    EXPECT_THROW(maker.GetLogicalDrives(FormatDisk::removableDrives), FormatDiskException);
    EXPECT_STREQ(maker.GetFirstDriveOfType(wanted), "");
    EXPECT_STREQ(maker.driveName_.c_str(), "");
}

TEST_P(BothFamilies, PassOverADriveForAnotherMedium) {
    mountDrive('A', true);
    RecordingDiskMaker alone;
    EXPECT_STREQ(alone.GetFirstDriveOfType(wanted), "");
    EXPECT_STREQ(alone.driveName_.c_str(), "A:\\");
    EXPECT_EQ(alone.events.size(), 1U);

    mountDrive('B', false);
    RecordingDiskMaker maker;
    EXPECT_STREQ(maker.GetFirstDriveOfType(wanted), "B:\\");
    EXPECT_EQ(maker.physicalDrive_, nt ? 0U : 1U);
}

// What was found in an earlier scan says nothing about the drive that is there now.
TEST_P(BothFamilies, ScanAnew) {
    RecordingDiskMaker maker;
    EXPECT_STREQ(maker.GetFirstDriveOfType(wanted), "A:\\");
    mountDrive('A', true);
    EXPECT_STREQ(maker.GetFirstDriveOfType(wanted), "");

    mountDrive('A', false);
    EXPECT_STREQ(maker.GetFirstDriveOfType(wanted), "A:\\");
    pc.machine().drives.mountFolder('A', hostPath(pc.archiveFolder()), DRIVE_REMOVABLE);
    EXPECT_STREQ(maker.GetFirstDriveOfType(wanted), "");
}

TEST_P(BothFamilies, LookAtFixedDrivesForAFixedMedium) {
    mountDrive('B', false);
    RecordingDiskMaker maker;
    MediaGeometry fixed = wanted;
    fixed.mediaType = FixedMedia;
    EXPECT_STREQ(maker.GetFirstDriveOfType(fixed), "");
    EXPECT_STREQ(maker.driveName_.c_str(), "C:\\");
}

TEST_P(BothFamilies, EndTheScanAtADriveThatFails) {
    mountDrive('B', false);
    RecordingDiskMaker maker;
    pc.machine().gate.failFunction("DeviceIoControl", ERROR_NOT_READY, 0, 1);
    EXPECT_STREQ(maker.GetFirstDriveOfType(wanted), "");
    ASSERT_EQ(maker.events.size(), 2U);
    // On Windows 98 the error comes from the reply, in which the service has put nothing.
    EXPECT_EQ(maker.events[1], (nt ? "error 21 200 " : "error 0 200 ") +
                                   std::string("Fehler bei der Öffnung eines Geräts"_ansi));
    EXPECT_STREQ(maker.driveName_.c_str(), "A:\\");
}

TEST_P(BothFamilies, OpenTheDeviceForEachCommandAnew) {
    pc.machine().errorMode = 5;
    const std::size_t handles = pc.machine().handles.openCount();
    {
        RecordingDiskMaker maker;
        EXPECT_EQ(pc.machine().errorMode, 0x8001U);
        maker.ResetDrive();
        maker.SetupDrive("A:\\");
        pc.machine().gate.startRecording();
        maker.QueryDriveGeometry(wanted);
        maker.QueryDriveGeometry(wanted);
        maker.reopen_ = 0;
        maker.QueryDriveGeometry(wanted);
        const auto calls = pc.machine().gate.calls();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "CreateFileA"), 2);
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "CloseHandle"), 1);
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "DeviceIoControl"), 3);
    }
    EXPECT_EQ(pc.machine().errorMode, 5U);
    EXPECT_EQ(pc.machine().handles.openCount(), handles);
}

TEST_P(BothFamilies, WriteTheBootSector) {
    RecordingDiskMaker maker;
    maker.GetFirstDriveOfType(wanted);
    maker.takeEvents();
    const auto image = boot_sector::Build(0x11223344);
    auto expected = pc.snapshot();
    std::memcpy(expected.data(), image.data(), image.size());
    maker.SetBootSectorImage(image.data(), 17);
    maker.SetReadWriteSize(2048);
    EXPECT_EQ(maker.WriteBootSector(), 1);
    EXPECT_TRUE(pc.snapshot() == expected);
    EXPECT_EQ(maker.events, Events{});
}

TEST_P(BothFamilies, ReportABootSectorThatCannotBeWritten) {
    const Events reported{"error 0 100 Fehler beim Schreiben des Bootsektors"};
    RecordingDiskMaker maker;
    maker.GetFirstDriveOfType(wanted);
    maker.takeEvents();
    EXPECT_EQ(maker.WriteBootSector(), 0) << "without an image";
    EXPECT_EQ(maker.takeEvents(), reported);

    maker.SetBootSectorImage(boot_sector::Build(0).data(), 512);
    winlayer::DisketteState state;
    state.writeProtected = true;
    pc.drive().setState(state);
    EXPECT_EQ(maker.WriteBootSector(), 0);
    EXPECT_EQ(maker.takeEvents(), reported);
    pc.drive().setState({});

    for (const char* function : {"CreateFileA", "DeviceIoControl", "SetFilePointer", "WriteFile"}) {
        pc.machine().gate.failFunction(function, ERROR_CRC);
        const bool used =
            nt == (function == std::string("SetFilePointer") || function == std::string("WriteFile"));
        EXPECT_EQ(maker.WriteBootSector(), used ? 0 : 1) << function;
        EXPECT_EQ(maker.takeEvents(), used ? reported : Events{}) << function;
        pc.machine().gate.reset();
    }
}

// What no library throws, a hook of the user interface may.
TEST(FormatDisk, PassesOnWhatIsNoStandardException) {
    DisketteMachine pc(WindowsVersion::Windows98);
    class Maker : public RecordingDiskMaker {
        void DeviceControl(DWORD, void* const, DWORD, void*, DWORD) override { throw 42; }
    };
    Maker maker;
    maker.SetupDrive("A:\\");
    EXPECT_THROW(maker.QueryDriveGeometry(wanted), int);
    EXPECT_EQ(maker.takeEvents(), Events{});
    maker.SetBootSectorImage(boot_sector::Build(0).data(), 512);
    EXPECT_THROW(maker.WriteBootSector(), int);
    EXPECT_EQ(maker.takeEvents(), Events{"error 0 300 Fehler beim Schreiben des Bootsektors"});
}

TEST(FormatDisk, SaysWhatFailed) {
    DisketteMachine pc;
    RecordingDiskMaker maker;
    try {
        maker.SetupDrive("A");
        FAIL() << "a name of one character was taken";
    } catch (const FormatDiskException& failure) {
        EXPECT_EQ(failure.m_type, 8U);
        EXPECT_EQ(failure.m_error_number, 0U);
        EXPECT_STREQ(failure.m_condition.c_str(),
                     "FormatDisk::SetupDrive - Input drive name A  is less than 2 bytes long.");
        EXPECT_STREQ(failure.m_file.c_str(), "FormatDiskLib\\FormatDiskLibSource\\format_disk");
        EXPECT_STREQ(failure.m_exception_name.c_str(), "class FormatDiskException");
    }
    EXPECT_STREQ(maker.driveName_.c_str(), "");
}

TEST(FormatDisk, ComposesTheDevicePath) {
    for (const auto version : {WindowsVersion::Windows95, WindowsVersion::Windows2000}) {
        DisketteMachine pc(version);
        RecordingDiskMaker maker;
        maker.BuildDevicePath(1, "VWIN32");
        EXPECT_STREQ(maker.devicePath_.c_str(), "") << "without a drive";
        maker.SetupDrive("C:\\");
        maker.BuildDevicePath(1, nullptr);
        EXPECT_STREQ(maker.devicePath_.c_str(), "\\\\.\\C:");
        maker.BuildDevicePath(0, nullptr);
        EXPECT_STREQ(maker.devicePath_.c_str(), "\\\\.\\C:");
        maker.BuildDevicePath(1, "VWIN32");
        EXPECT_STREQ(maker.devicePath_.c_str(), winlayer::isNt(version) ? "\\\\.\\C:" : "\\\\.\\VWIN32");
        maker.physicalDrive_ = 12;
        maker.BuildDevicePath(0, "ignored");
        EXPECT_STREQ(maker.devicePath_.c_str(), "\\\\.\\PHYSICALDRIVE12");
    }
}

TEST(FormatDisk, KeepsTheDrivesOfTheTypesAskedForUpToTheFirstGap) {
    DisketteMachine pc;
    const UINT types[] = {DRIVE_REMOVABLE, DRIVE_UNKNOWN, DRIVE_FIXED,       DRIVE_REMOTE,
                          DRIVE_CDROM,     DRIVE_RAMDISK, DRIVE_NO_ROOT_DIR, DRIVE_REMOVABLE};
    const auto files = pc.machine().drives.find('A')->files;
    for (std::size_t i = 0; i < std::size(types); ++i) {
        pc.machine().drives.mount(static_cast<char>('A' + i), files, types[i]);
    }
    pc.machine().drives.mount('J', files, DRIVE_REMOVABLE);  // behind the gap I:
    const std::pair<DWORD, std::string> cases[] = {
        {0x4000000, "AH"}, {0x2000000, "C"},  {0x1000000, "D"},
        {0x200000, "F"},   {0x100000, "BEG"}, {0x4000000 | 0x200000, "AFH"},
        {0, ""},
    };
    for (const auto& [mask, expected] : cases) {
        RecordingDiskMaker maker;
        maker.GetLogicalDrives(mask);
        std::string letters;
        for (DWORD i = 0; i < maker.driveList_.GetNumberOfStrings(); ++i) {
            const std::string root = maker.driveList_.Retrieve(i);
            EXPECT_EQ(root.substr(1), ":\\");
            letters += root[0];
        }
        EXPECT_EQ(letters, expected) << std::hex << mask;
    }
}

TEST(FormatDisk, NamesTheFileSystemOfItsSelector) {
    DisketteMachine pc;
    const std::pair<int, DWORD> cases[] = {{0, 3}, {1, 2}, {2, 6}, {3, 3}, {-1, 3}};
    for (const auto& [selector, type] : cases) {
        EXPECT_EQ(FormatDisk(selector).get_filesystem(), type) << selector;
    }
}

// Drives for anything but diskettes are asked for the medium that is in them.
TEST(FormatDisk, ReadsThePresentMediumWhenNoDisketteIsWanted) {
    DisketteMachine pc;
    class Maker : public RecordingDiskMaker {
        void DeviceControl(DWORD code, void* const, DWORD, void* out, DWORD outSize) override {
            EXPECT_EQ(code, 0x00070000U);
            ASSERT_EQ(outSize, sizeof present);
            std::memcpy(out, &present, sizeof present);
        }

    public:
        DISK_GEOMETRY present{};
    };
    Maker maker;
    maker.present.Cylinders.QuadPart = 0x1'0000'0007;
    maker.present.MediaType = RemovableMedia;
    maker.present.TracksPerCylinder = 255;
    maker.present.SectorsPerTrack = 63;
    maker.present.BytesPerSector = 2048;
    const MediaGeometry same{0x1'0000'0007, 255, 63, 2048, RemovableMedia};
    maker.SetupDrive("A:\\");
    EXPECT_EQ(maker.QueryDriveGeometry(same), 1);
    EXPECT_EQ(maker.driveGeometry_, same);
    EXPECT_EQ(maker.writeSize_, 2048);
    MediaGeometry other = same;
    other.cylinders = 7;
    EXPECT_EQ(maker.QueryDriveGeometry(other), 1);
    EXPECT_EQ(maker.driveGeometry_, same) << "what does not fit is not taken";
}

// Device type byte of MS-DOS to the medium that Windows names, through the drive that is asked.
TEST(FormatDisk, ReadsTheMediumFromTheDeviceType) {
    DisketteMachine pc(WindowsVersion::WindowsMe);
    class Maker : public RecordingDiskMaker {
        void DeviceControl(DWORD code, void* const in, DWORD inSize, void* out, DWORD outSize) override {
            EXPECT_EQ(code, 1U);
            EXPECT_EQ(inSize, 28U);
            EXPECT_EQ(outSize, 28U);
            EXPECT_NE(in, out);
            deviceParameters_.deviceType = type;
        }

    public:
        BYTE type = 0;
    };
    Maker maker;
    maker.SetupDrive("A:\\");
    const std::pair<BYTE, MEDIA_TYPE> cases[] = {
        {0, F5_360_512},     {1, F5_1Pt2_512},    {2, F3_720_512},      {3, Unknown},
        {4, Unknown},        {5, FixedMedia},     {7, F3_1Pt44_512},    {9, F3_2Pt88_512},
        {6, RemovableMedia}, {8, RemovableMedia}, {200, RemovableMedia}};
    for (const auto& [type, medium] : cases) {
        maker.type = type;
        maker.QueryDriveGeometry(wanted);
        EXPECT_EQ(maker.driveGeometry_.mediaType, medium) << int{type};
    }
}

}  // namespace
