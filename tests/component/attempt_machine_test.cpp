// Making the disk from the page, on diskettes of the layer: success, retries, and requests that arrive
// meanwhile.
#include <gtest/gtest.h>

#include <algorithm>

#include "component/entry_points.h"
#include "component/resources/resource.h"
#include "wizard_fixture.h"
#include "wizard_machine.h"

namespace {

using winlayer::WindowsVersion;

class Attempt : private WizardMachine, public WizardTest {
protected:
    explicit Attempt(WindowsVersion version = WindowsVersion::XP) : WizardMachine(version) { goToFloppy(); }

    using WizardMachine::pc;

    void protect(bool on) {
        winlayer::DisketteState state;
        state.writeProtected = on;
        pc.drive().setState(state);
    }
    bool shows(const char* beginning) const {
        return text(IDC_RUNNING_TEXT).find(beginning) != std::string::npos;
    }
    bool made() const { return shows("Notfalldiskette wurde erstellt."); }
    bool stopped() const { return shows("gestoppt"); }
    bool atRest() const { return shows("Zur Erstellung"); }
    void makeDisk() {
        press(wizard::nextCommand);
        EXPECT_TRUE(made());
        EXPECT_EQ(pc.faultOfDiskette(), "");
    }
};

class AttemptOnBothFamilies : public Attempt, public testing::WithParamInterface<WindowsVersion> {
protected:
    AttemptOnBothFamilies() : Attempt(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Windows, AttemptOnBothFamilies,
                         testing::Values(WindowsVersion::Windows98, WindowsVersion::XP), familyName);

TEST_P(AttemptOnBothFamilies, MakesTheDisketteAndTellsTheFrame) {
    press(wizard::nextCommand);
    EXPECT_TRUE(made());
    EXPECT_EQ(floppy().State(), PageState::Made);
    EXPECT_EQ(pc.faultOfDiskette(), "");
    const Lines lines = hostLog.take();
    EXPECT_EQ((Lines{lines.begin(), lines.begin() + 7}),
              (Lines{"range 0 100", "position 0", "status ", "buttons 1A", "enable 0 disable 1A", "home 0",
                     "position 0"}));
    const auto written = std::find(lines.begin(), lines.end(), "position 100");
    EXPECT_EQ((Lines{written, written + 5}),
              (Lines{"position 100", "status Die Diskette wurde erfolgreich erstellt.", "position 0",
                     "status Die Diskette wird geprüft...", "position 6"}));
    EXPECT_EQ((Lines{lines.end() - 11, lines.end()}),
              (Lines{"position 100", "buttons 282", "home 0", "enable 10 disable 0", "position 0", "status ",
                     "range 0 0", "buttons 282", "enable 282 disable 0", "enable 21A disable 0", "home 1"}));
    press(wizard::finishCommand);
    press(wizard::nextCommand);
    EXPECT_TRUE(atRest());
    EXPECT_EQ(floppy().GetSliderPos(), 0);
    pc.insertBlank();
    makeDisk();
}

TEST_P(AttemptOnBothFamilies, AsksForAProtectedDisketteUntilItIsNone) {
    pc.putOldFiles();
    protect(true);
    int boxes = 0;
    hostLog.duringBox = [&] {
        if (++boxes == 3) {
            protect(false);
        }
    };
    press(wizard::nextCommand);
    EXPECT_TRUE(made());
    EXPECT_EQ(boxes, 3);
    EXPECT_EQ(hostLog.count(
                  "box CBSTR DEFAULT PRODUCT NAME [1] Vergewissern Sie sich, dass in Laufwerk A: eine "
                  "Diskette eingelegt ist und der Schreibschutz entfernt ist.\n\nKlicken Sie auf 'OK', um "
                  "fortzufahren."),
              3);
    EXPECT_EQ(hostLog.count("range 0 100"), 1) << "retries belong to one attempt";
    EXPECT_EQ(pc.faultOfDiskette(), "");
}

TEST_P(AttemptOnBothFamilies, EndsWhenTheUserStops) {
    pc.putOldFiles();
    protect(true);
    hostLog.answers = {IDOK, IDCANCEL};
    press(wizard::nextCommand);
    EXPECT_TRUE(stopped());
    EXPECT_EQ(floppy().State(), PageState::Ready);
    EXPECT_EQ(hostLog.count("box"), 2);
    protect(false);
    makeDisk();
}

TEST_F(Attempt, BackFromAMadeDiskMakesAnother) {
    makeDisk();
    pc.insertBlank();
    hostLog.take();
    press(wizard::backCommand);
    const Lines lines = hostLog.take();
    EXPECT_EQ((Lines{lines.begin(), lines.begin() + 2}), (Lines{"range 0 0", "range 0 100"}));
    EXPECT_TRUE(made());
    EXPECT_EQ(pc.faultOfDiskette(), "");
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.take(), (Lines{"buttons 282", "home 0"})) << "a made disk is only shown";
}

TEST_P(AttemptOnBothFamilies, AFailedBootSectorRestartsThePageAndTheDiskIsAskedForAgain) {
    bool restarted = false;
    winlayer::SectorFault bootSector;
    bootSector.kind = winlayer::SectorFault::Kind::WriteFails;
    bootSector.times = 1;
    winlayer::DisketteState state;
    state.faults.push_back(bootSector);
    pc.drive().setState(state);
    hostLog.duringStatus = [&](const std::string& status) {
        restarted = restarted || (status.starts_with("Vorbereiten") && atRest());
    };
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count("box Systemfehler [30] Fehler beim Schreiben des Bootsektors"), 1);
    EXPECT_TRUE(restarted);
    EXPECT_EQ(hostLog.count("box CBSTR DEFAULT PRODUCT NAME [1]"), 1);
    EXPECT_TRUE(made());
    EXPECT_EQ(pc.faultOfDiskette(), "");
}

// Of the boot sector, both FATs, the directory, the loader and the last file.
TEST_P(AttemptOnBothFamilies, AWriteThatTheDriveLostIsFoundAndTheDiskIsAskedForAgain) {
    std::size_t last = 32;
    for (const test::ZarFile& file : emergencyFiles()) {
        last += (file.data.size() + 511) / 512;
    }
    for (const DWORD sector : {0U, 1U, 10U, 19U, 41U, static_cast<DWORD>(last)}) {
        send(WM_ACTIVATE, WA_ACTIVE, 0);
        pc.insertBlank();
        winlayer::DisketteState state;
        state.faults.push_back({sector, winlayer::SectorFault::Kind::WriteLost, NO_ERROR});
        pc.drive().setState(state);
        hostLog.take();
        hostLog.duringBox = [&] { pc.drive().setState({}); };
        press(wizard::nextCommand);
        EXPECT_EQ(hostLog.count("box CBSTR DEFAULT PRODUCT NAME [1]"), 1) << sector;
        EXPECT_TRUE(made()) << sector;
        EXPECT_EQ(pc.faultOfDiskette(), "") << sector;
    }
}

// What is asked for at each of an attempt's status lines in turn.
class Interruption : public Attempt {
protected:
    // Makes one attempt; at status line `at` the command is put into the queue. False when there is none.
    bool interrupt(int at, WORD command) {
        int line = 0;
        bool done = false;
        hostLog.duringStatus = [&](const std::string& status) {
            if (!status.empty() && line++ == at) {
                done = PostMessageA(frame.page(), WM_COMMAND, command, 0) != 0;
            }
        };
        hostLog.take();
        press(wizard::nextCommand);
        hostLog.duringStatus = nullptr;
        EXPECT_LE(hostLog.count("range 0 100"), 1) << at;
        return done;
    }
};

TEST_F(Interruption, CancelLeavesTheComponentOnce) {
    for (int at = 0; interrupt(at, wizard::cancelCommand); ++at) {
        EXPECT_TRUE(stopped() || made()) << at;
        EXPECT_EQ(hostLog.count("box"), 0) << "no prompt after a cancel, " << at;
        hostLog.take();
        pump();
        EXPECT_EQ(hostLog.take(), Lines{"leave"}) << at;
        send(WM_ACTIVATE, WA_ACTIVE, 0);
        pc.insertBlank();
        makeDisk();  // what stopped the last attempt does not stop this one
        send(WM_ACTIVATE, WA_ACTIVE, 0);
        pc.insertBlank();
    }
}

TEST_F(Interruption, BackAndFinishEndOnTheOptions) {
    for (const WORD command : {wizard::backCommand, wizard::finishCommand}) {
        for (int at = 0; interrupt(at, command); ++at) {
            EXPECT_EQ(ui->CurrentPage(), ComponentUI::optionsPage) << at;
            EXPECT_EQ(hostLog.lines.back(), "home 1") << at;
            press(wizard::nextCommand);
            EXPECT_TRUE(atRest()) << at;
            pc.insertBlank();
        }
        send(WM_ACTIVATE, WA_ACTIVE, 0);
        pc.insertBlank();
    }
}

TEST_F(Interruption, TheEndOfTheComponentIsTheEndOfTheAttempt) {
    bool again = true;
    for (int at = 0; again; ++at) {
        int line = 0;
        again = false;
        const HWND page = frame.page();
        ComponentUI* const ended = ui;
        hostLog.duringStatus = [&](const std::string&) {
            if (line++ == at) {
                again = true;
                DestroyComponentUI(ended, 0);
                EXPECT_FALSE(IsWindow(page));
                EXPECT_EQ(hostLog.enabled & 0x29A, 0x29AU) << "another page can be used in the frame";
                hostLog.take();
            }
        };
        SendMessageA(page, WM_COMMAND, wizard::nextCommand, 0);
        hostLog.duringStatus = nullptr;
        if (again) {
            EXPECT_EQ(hostLog.take(), Lines{}) << "silent once it is destroyed, " << at;
            open();
            goToFloppy();
            pc.insertBlank();
        }
    }
    EXPECT_TRUE(made());
}

TEST_F(Interruption, ASwitchToAnotherPageEndsTheAttempt) {
    const HWND options = ui->Page(ComponentUI::optionsPage)->Window();
    hostLog.duringStatus = [&](const std::string& status) {
        if (status.starts_with("Die Datei QZLOADER.BIN")) {
            PostMessageA(options, WM_COMMAND, wizard::backCommand, 0);
        }
    };
    press(wizard::nextCommand);
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::productPage);
    EXPECT_EQ(hostLog.offered, 0x212U) << "the buttons are those of the page that is shown";
    EXPECT_EQ(floppy().State(), PageState::Ready);
    EXPECT_EQ(hostLog.count("status Die Datei"), 3);
    EXPECT_EQ(hostLog.count("box"), 0);
}

TEST_F(Interruption, ANewComponentWaitsForTheOldOnesAttempt) {
    ComponentUI* const old = ui;
    hostLog.duringStatus = [&](const std::string& status) {
        if (status.starts_with("Vorbereiten")) {
            DestroyComponentUI(old, 0);
            open();
            goToFloppy();
            press(wizard::nextCommand);
        }
    };
    press(wizard::nextCommand);
    hostLog.duringStatus = nullptr;
    EXPECT_EQ(hostLog.count("range 0 100"), 0) << "both would write on one diskette";
    EXPECT_TRUE(atRest());
    makeDisk();
}

TEST_F(Interruption, TheEndOfTheProgramEndsTheAttempt) {
    hostLog.duringStatus = [&](const std::string& status) {
        if (status.starts_with("Die Datei QZLOADER.BIN")) {
            PostQuitMessage(3);
        }
    };
    press(wizard::nextCommand);
    EXPECT_TRUE(stopped());
    MSG message{};
    EXPECT_TRUE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 3U);
}

TEST_F(Attempt, AThousandUserInterfacesLeaveNothing) {
    close();
    auto& machine = pc.machine();
    const auto windows = machine.windows.count();
    const auto graphics = machine.graphics.count();
    const auto handles = machine.handles.openCount();
    for (int i = 0; i < 1000; ++i) {
        open();
        goToFloppy();
        press(wizard::backCommand);
        close();
        pump();
        hostLog.take();
    }
    EXPECT_EQ(machine.windows.count(), windows);
    EXPECT_EQ(machine.graphics.count(), graphics);
    EXPECT_EQ(machine.handles.openCount(), handles);
    EXPECT_EQ(GetModuleHandleA("RICHED32.DLL"), nullptr);
    open();
}

}  // namespace
