#include "make_zar_disks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "FormatDiskLib/disk_maker_machine.h"
#include "ansi_literal.h"
#include "boot_check.h"
#include "support/host_directory_machine.h"

namespace {

using namespace UTILS::literals;
using winlayer::WindowsVersion;
using Events = RecordingDiskMaker::Events;

const std::string noDrive =
    "Kein geeignetes Diskettenlaufwerk gefunden. Sie benötigen ein Laufwerk für 1,44-MB-Disketten."_ansi;

winlayer::DisketteState protectedState() {
    winlayer::DisketteState state;
    state.writeProtected = true;
    return state;
}

class DiskMaker : public testing::TestWithParam<WindowsVersion> {
protected:
    DiskMakerMachine pc{GetParam()};
    RecordingDiskMaker maker;

    // Finds the drive and forgets the events of that.
    void find() {
        ASSERT_EQ(maker.FindFloppyDrive(), 1);
        maker.takeEvents();
    }
    Events lastEvents(std::size_t count) const {
        return {maker.events.end() - static_cast<std::ptrdiff_t>(std::min(count, maker.events.size())),
                maker.events.end()};
    }
};

INSTANTIATE_TEST_SUITE_P(Windows, DiskMaker, testing::Values(WindowsVersion::Windows98, WindowsVersion::XP),
                         familyName);

TEST_P(DiskMaker, MakesTheDiskAndTellsEachStep) {
    pc.putOldFiles();
    maker.configure(pc.archiveFolder());
    EXPECT_EQ(maker.FindFloppyDrive(), 1);
    EXPECT_STREQ(maker.GetDriveRoot().c_str(), "A:\\");
    EXPECT_EQ(maker.takeEvents(),
              (Events{"Diskettenlaufwerk wird gesucht...", "Diskettenlaufwerke werden gesucht...",
                      "Laufwerk A: gefunden", "slider 0 0"}));

    maker.SetProgressEnd(80);
    EXPECT_EQ(maker.MakeDisk(), 1);
    const std::string label = "Datenträgerbezeichnung wird festgelegt..."_ansi;
    Events expected{"slider 0 0", "slider 0 0", label, "slider 0 0",
                    "Vorbereiten auf Schreiben auf die Diskette..."};
    for (const BootFile& file : bootFiles) {
        expected.push_back("Die Datei " + std::string(file.name) + " wird extrahiert...");
        expected.push_back("slider 0 0");
    }
    expected.push_back("slider 1 80");
    expected.push_back("Die Diskette wurde erfolgreich erstellt.");
    EXPECT_EQ(maker.events, expected);
    EXPECT_EQ(pc.faultOfDiskette(), "");
}

TEST_P(DiskMaker, MakesAnotherDiskAfterTheFirst) {
    maker.configure(pc.archiveFolder());
    for (int disk = 0; disk < 2; ++disk) {
        pc.insertBlank();
        EXPECT_EQ(maker.FindFloppyDrive(), 1);
        EXPECT_EQ(maker.MakeDisk(), 1);
        EXPECT_EQ(pc.faultOfDiskette(), "") << "disk " << disk;
    }
    EXPECT_EQ(maker.MakeDisk(), 1) << "over a finished disk, its system files read-only";
    EXPECT_EQ(pc.faultOfDiskette(), "");
}

TEST_P(DiskMaker, TellsThatThereIsNoDrive) {
    pc.machine().drives.unmount('A');
    EXPECT_EQ(maker.FindFloppyDrive(), 0);
    EXPECT_EQ(lastEvents(1), Events{"error 0 100 " + noDrive});
    EXPECT_STREQ(maker.GetDriveRoot().c_str(), "");
}

TEST_P(DiskMaker, TellsWhyADriveCannotBeUsed) {
    const auto expectReport = [&](const std::string& report) {
        EXPECT_EQ(maker.FindFloppyDrive(), 0);
        EXPECT_EQ(lastEvents(1), Events{report});
    };
    maker.atEvent = [](const std::string& event) {
        if (event == "Laufwerk A: gefunden") throw FormatDiskException(10, 1234, 1, "", "");
    };
    expectReport("error 1234 100 " + noDrive);
    maker.atEvent = [](const std::string& event) {
        if (event == "Laufwerk A: gefunden") throw 42;
    };
    expectReport("error 0 100 Unbekannter Systemfehler");
    winlayer::DisketteState state;
    state.lowDensityDrive = true;
    pc.drive().setState(state);
    expectReport("error 0 100 Fehler beim Zugriff auf das Laufwerk: 'A:\\'\n");
}

TEST_P(DiskMaker, LeavesTheDisketteAloneWithoutFiles) {
    find();
    const auto before = pc.snapshot();
    EXPECT_EQ(maker.MakeDisk(), 0);
    maker.configure(pc.archiveFolder());
    maker.ClearDiskFiles();
    EXPECT_EQ(maker.MakeDisk(), 0);
    EXPECT_EQ(maker.events, Events{});
    EXPECT_EQ(pc.snapshot(), before);
}

TEST_P(DiskMaker, StopsAtAProtectedDisketteThatHoldsFiles) {
    pc.putOldFiles();
    const auto before = pc.snapshot();
    pc.drive().setState(protectedState());
    maker.configure(pc.archiveFolder());
    find();
    EXPECT_EQ(maker.MakeDisk(), 0);
    EXPECT_EQ(maker.events, (Events{"slider 0 0", "slider 0 0", "slider 1 0"}));
    EXPECT_EQ(pc.snapshot(), before);
}

// The root of the current drive, which is not the diskette, lies near where no drive was found.
TEST_P(DiskMaker, ErasesNothingWhenNoDriveWasFound) {
    maker.configure(pc.archiveFolder());
    pc.putOldFiles();
    ASSERT_TRUE(SetCurrentDirectoryA("A:\\"));
    const auto before = pc.snapshot();
    EXPECT_EQ(maker.MakeDisk(), 0);
    EXPECT_EQ(maker.events, (Events{"slider 0 0", "slider 0 0", "slider 1 0"}));
    EXPECT_EQ(maker.EraseTree(""), 0);
    EXPECT_EQ(pc.snapshot(), before);
}

// An empty diskette needs no erasing, and an empty drive lets itself be erased; both show later.
TEST_P(DiskMaker, StopsAtTheFirstFileWhenNothingCanBeWritten) {
    winlayer::DisketteState empty;
    empty.noMedium = true;
    maker.configure(pc.archiveFolder());
    find();
    for (const auto& state : {protectedState(), empty}) {
        pc.drive().setState(state);
        EXPECT_EQ(maker.MakeDisk(), 0);
        EXPECT_EQ(maker.takeEvents(),
                  (Events{"slider 0 0", "slider 0 0", "Datenträgerbezeichnung wird festgelegt..."_ansi,
                          "error 0 100 Fehler beim Schreiben des Bootsektors", "slider 0 0",
                          "Vorbereiten auf Schreiben auf die Diskette...",
                          "Die Datei IBMBIO.COM wird extrahiert...",
                          "Fehler beim Extrahieren der Datei IBMBIO.COM zu A:\\", "slider 1 0"}));
    }
}

TEST_P(DiskMaker, PassesOverAFileThatTheArchiveLacks) {
    auto files = emergencyFiles();
    files.pop_back();
    pc.writeArchive(files);
    maker.configure(pc.archiveFolder());
    find();
    EXPECT_EQ(maker.MakeDisk(), 1);
    EXPECT_EQ(lastEvents(1), Events{"Die Diskette wurde erfolgreich erstellt."});
    EXPECT_EQ(pc.faultOfDiskette(), "SETTING.DAT is missing");
}

// Four files written, their attributes set, the fifth not: what follows depends on what was thrown.
TEST_P(DiskMaker, StopsAtAFileThatCannotBeExtracted) {
    const std::string fifth = "Die Datei COMMAND.COM wird extrahiert...";
    const auto expectEnd = [&](const Events& end) {
        EXPECT_EQ(maker.MakeDisk(), 0);
        EXPECT_EQ(lastEvents(end.size()), end);
        EXPECT_EQ(pc.rootNames(),
                  (std::vector<std::string>{"IBMBIO.COM", "IBMDOS.COM", "QZLOADER.BIN", "BOOTPRG.BIN"}));
        EXPECT_EQ(GetFileAttributesA("A:\\IBMBIO.COM"), 7U);
        EXPECT_EQ(GetFileAttributesA("A:\\BOOTPRG.BIN"), 32U);
    };
    maker.configure(pc.archiveFolder());
    find();

    maker.atEvent = [&](const std::string& event) {
        if (event == fifth) throw ZAR_CommonException(170, 5, 1, "", "");
    };
    expectEnd({fifth, "Fehler bei der Archiv-Extrahierung", "slider 1 0"});
    maker.atEvent = [&](const std::string& event) {
        if (event == fifth) maker.SendCancelCommand();
    };
    expectEnd({fifth, "slider 1 0"});
    maker.atEvent = [&](const std::string& event) {
        if (event == fifth) throw 42;
    };
    expectEnd({fifth, "Fehler beim Extrahieren der Datei COMMAND.COM zu A:\\", "slider 1 0"});
    maker.atEvent = nullptr;
    EXPECT_EQ(maker.MakeDisk(), 1) << "and another try succeeds";
    EXPECT_EQ(pc.faultOfDiskette(), "");
}

TEST_P(DiskMaker, StopsAtARecordWithoutData) {
    auto files = emergencyFiles();
    files[4].data.clear();
    pc.writeArchive(files);
    maker.configure(pc.archiveFolder());
    find();
    EXPECT_EQ(maker.MakeDisk(), 0);
    EXPECT_EQ(lastEvents(2), (Events{"Fehler beim Extrahieren der Datei COMMAND.COM zu A:\\", "slider 1 0"}));
}

TEST_P(DiskMaker, TellsWhatEndsThePreparation) {
    maker.configure(pc.archiveFolder());
    find();
    int sliders = 0;
    maker.atEvent = [&](const std::string& event) {
        if (event == "slider 0 0" && ++sliders == 3) throw FormatDiskException(11, 5, 1, "", "");
    };
    EXPECT_EQ(maker.MakeDisk(), 0);
    EXPECT_EQ(lastEvents(3), (Events{"slider 0 0", "Fehler beim Schreiben auf die Diskette", "slider 1 0"}));
}

TEST_P(DiskMaker, ErasesATreeAndStopsAtTheFirstFailure) {
    EXPECT_EQ(maker.EraseTree("A:"), 1) << "an empty diskette";
    pc.putOldFiles();
    EXPECT_EQ(maker.EraseTree("A:\\OLD"), 1);
    EXPECT_EQ(pc.rootNames(), (std::vector<std::string>{"IO.SYS", "OLD"}));
    EXPECT_EQ(maker.EraseTree("A:\\"), 1);
    EXPECT_EQ(pc.rootNames(), std::vector<std::string>{});
    EXPECT_EQ(maker.EraseTree("A:\\MISSING"), 1);

    for (const char* function : {"SetFileAttributesA", "DeleteFileA", "RemoveDirectoryA", "FindNextFileA"}) {
        pc.putOldFiles();
        const auto names = pc.rootNames();
        pc.machine().gate.failFunction(function, ERROR_CRC);
        EXPECT_EQ(maker.EraseTree("A:\\"), 0) << function;
        pc.machine().gate.reset();
        EXPECT_NE(pc.rootNames(), std::vector<std::string>{}) << function;
        EXPECT_EQ(maker.EraseTree("A:\\"), 1);
    }
}

TEST(DiskMakers, EraseALinkAndNothingThroughIt) {
    namespace fs = std::filesystem;
    winlayer::ScopedMachine machine;
    const HostDirectory disk;
    const HostDirectory elsewhere;
    machine->drives.mountFolder('B', disk.path());
    std::ofstream(elsewhere / "kept") << "x";
    fs::create_symlink(elsewhere.path(), disk / "folder");
    fs::create_symlink(elsewhere / "kept", disk / "file");
    EXPECT_EQ(MakeZARDisks().EraseTree("B:\\"), 1);
    EXPECT_TRUE(fs::is_empty(disk.path()));
    EXPECT_TRUE(fs::exists(elsewhere / "kept"));
}

TEST(DiskMakers, GiveEachDisketteASerialNumberOfItsOwn) {
    DiskMakerMachine pc(WindowsVersion::XP);
    std::vector<DWORD> serials;
    for (int i = 0; i < 2; ++i) {
        RecordingDiskMaker maker;
        maker.configure(pc.archiveFolder());
        ASSERT_EQ(maker.FindFloppyDrive() + maker.MakeDisk(), 2);
        serials.push_back(pc.serialNumber());
        EXPECT_GE(serials.back(), 0x00AAAAAAU);
        EXPECT_EQ(serials.back() & ~0xAAAAFFFFU, 0U);
    }
    EXPECT_NE(serials[0], serials[1]);
}

TEST(DiskMakers, MakeTheSameDisketteOnBothFamilies) {
    std::vector<std::vector<std::byte>> made;
    for (const auto version :
         {WindowsVersion::Windows95, WindowsVersion::Windows98, WindowsVersion::WindowsMe,
          WindowsVersion::NT351, WindowsVersion::Windows2000, WindowsVersion::XP}) {
        DiskMakerMachine pc(version);
        pc.putOldFiles();
        RecordingDiskMaker maker;
        maker.configure(pc.archiveFolder());
        ASSERT_EQ(maker.FindFloppyDrive() + maker.MakeDisk(), 2);
        made.push_back(pc.snapshot());
        std::fill_n(made.back().begin() + boot_sector::serialNumberAt, 4, std::byte{0});
        EXPECT_TRUE(made.back() == made.front());
    }
}

}  // namespace
