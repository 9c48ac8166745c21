// The wizard without things that it should be able to count on: resources, the rich-edit control, its host,
// the host's readiness and the install directory.
#include <gtest/gtest.h>

#include <algorithm>

#include "component/entry_points.h"
#include "component/resources/resource.h"
#include "wizard_fixture.h"
#include "wizard_machine.h"

namespace {

using winlayer::WindowsVersion;

constexpr const char* archiveNotFound = "status Fehler beim Extrahieren der Datei IBMBIO.COM zu A:\\";

class BadDay : private WizardMachine, public WizardTest {
protected:
    BadDay() : WizardMachine(WindowsVersion::XP) {}

    using WizardMachine::host;
    using WizardMachine::installIn;
    using WizardMachine::pc;
    using WizardMachine::removeInstallDirectory;

    void fail(const char* function, std::size_t count = winlayer::Gate::always) {
        pc.machine().gate.failFunction(function, ERROR_RESOURCE_NAME_NOT_FOUND, 0, count);
    }
    // Everything but opening the wizard happens on a good day again.
    void openWithout(const char* function) {
        close();
        host.log();
        hostLog.take();
        fail(function);
        open();
        pc.machine().gate.reset();
    }
    void reopen() {
        close();
        open();
        goToFloppy();
    }
    bool made() const { return floppy().State() == PageState::Made; }
};

TEST_F(BadDay, APageWithoutATemplateIsNotShownAndMadeAnewLater) {
    openWithout("CreateDialogParamA");
    ASSERT_NE(ui, nullptr);
    EXPECT_EQ(ui->CurrentPage(), -1);
    EXPECT_EQ(hostLog.take(), Lines{});
    fail("CreateDialogParamA");
    EXPECT_EQ(ui->ShowPage(ComponentUI::productPage, 0), ERROR_RESOURCE_NAME_NOT_FOUND);
    pc.machine().gate.reset();
    EXPECT_EQ(ui->ShowPage(ComponentUI::productPage, 0), 0);
    fail("CreateDialogParamA");
    press(wizard::nextCommand);
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::productPage);
    EXPECT_EQ(ui->Page(ComponentUI::optionsPage), nullptr);
    pc.machine().gate.reset();
    press(wizard::nextCommand);
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::optionsPage);
}

TEST_F(BadDay, WithoutTextsTheDiskIsMadeAllTheSame) {
    fail("LoadStringA");
    goToOptions();
    EXPECT_EQ(text(IDC_HINT), "");
    press(wizard::backCommand);
    goToFloppy();
    EXPECT_EQ(text(IDC_RUNNING_TEXT), "");
    pc.putOldFiles();
    winlayer::DisketteState state;
    state.writeProtected = true;
    pc.drive().setState(state);
    hostLog.duringBox = [this] { pc.drive().setState({}); };
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count("box CBSTR DEFAULT PRODUCT NAME [1] "), 1) << "asked without a text";
    EXPECT_TRUE(made());
    EXPECT_EQ(text(IDC_RUNNING_TEXT), "");
    EXPECT_EQ(pc.faultOfDiskette(), "");
}

TEST_F(BadDay, WithoutAPictureThePlaceIsEmpty) {
    openWithout("LoadBitmapA");
    pc.machine().gate.startRecording();
    InvalidateRect(frame.page(), nullptr, TRUE);
    UpdateWindow(frame.page());
    const auto calls = pc.machine().gate.calls();
    pc.machine().gate.reset();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "EndPaint"), 1);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "StretchBlt"), 0);
    EXPECT_EQ(hostLog.offered, 0x212U);
}

TEST_F(BadDay, WithoutItsTextTheProductPageIsEmpty) {
    openWithout("FindResourceA");
    EXPECT_EQ(host.log(), "create alone 5\nattach 1029\n");
    EXPECT_EQ(hostLog.offered, 0x212U);
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::productPage);
}

TEST_F(BadDay, WithoutRichEditThePageHasNoTextAndTheWizardGoesOn) {
    close();
    fail("LoadLibraryA", 1);
    open();
    EXPECT_EQ(control(IDC_RICH_TEXT), nullptr);
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::productPage);
    frame.resize(333, 207);
    EXPECT_EQ(place(IDC_PICTURE), "133,0 66x41");
    goToFloppy();
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::floppyPage);
}

TEST_F(BadDay, AHostThatIsResetInMidRunTakesItsNameWithIt) {
    {
        PropertySection section;
        section.Open("CBSTR", 1);
        section.SetValue("ProductName", "Velmorcenter");
    }
    goToFloppy();
    pc.putOldFiles();
    winlayer::DisketteState state;
    state.writeProtected = true;
    pc.drive().setState(state);
    hostLog.duringBox = [&] {
        if (!ResetEvent(host->readyEvent) || hostLog.count("box ") == 2) pc.drive().setState({});
    };
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count("box Velmorcenter [1]"), 1);
    EXPECT_EQ(hostLog.count("box CBSTR DEFAULT PRODUCT NAME [1]"), 1);
    EXPECT_TRUE(made()) << "what was read before stays";
    reopen();
    hostLog.duringBox = nullptr;
    hostLog.answers = {IDCANCEL};
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count(archiveNotFound), 1) << "a new page cannot ask for the directory";
    SetEvent(host->readyEvent);
    PropertySection section;
    section.Open("CBSTR", 1);
    section.DeleteValue("ProductName");
}

TEST_F(BadDay, TheInstallDirectoryMayEndInABackslashOrBeMissing) {
    installIn(pc.archiveFolder() + "\\");
    reopen();
    press(wizard::nextCommand);
    EXPECT_TRUE(made());
    EXPECT_EQ(pc.faultOfDiskette(), "");
    removeInstallDirectory();
    reopen();
    hostLog.answers = {IDOK, IDCANCEL};
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count(archiveNotFound), 2);
    EXPECT_FALSE(made());
}

struct ComputerWithoutHost {
    DiskMakerMachine pc{WindowsVersion::XP};
};

class BadHost : private ComputerWithoutHost, public WizardTest {
protected:
    BadHost() { pc.machine().clock.stop(); }
    using ComputerWithoutHost::pc;
};

TEST_F(BadHost, WithoutAHostADiskFailsWhereItsArchiveIsOpened) {
    goToFloppy();
    hostLog.answers = {IDCANCEL};
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count(archiveNotFound), 1);
    EXPECT_EQ(hostLog.count("box CBSTR DEFAULT PRODUCT NAME [1]"), 1);
    EXPECT_NE(text(IDC_RUNNING_TEXT).find("gestoppt"), std::string::npos);
}

TEST_F(BadHost, WithoutAReadyEventOnlyTheFirstRequestFails) {
    HostModule host("without_event");
    close();
    open();
    EXPECT_EQ(host.log(), "") << "the product page's";
    WizardMachine::installIn(pc.archiveFolder());
    goToFloppy();
    press(wizard::nextCommand);
    EXPECT_EQ(pc.faultOfDiskette(), "");
    close();
    DetachLibrary(false);  // before the host goes
    AttachLibrary(GetModuleHandleA(nullptr));
    open();
}

}  // namespace
