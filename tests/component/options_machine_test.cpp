// What the options page asks the shell for, and what the product page asks the host for.
#include <gtest/gtest.h>

#include "component/PropertySection.h"
#include "component/resources/resource.h"
#include "host_modules.h"
#include "winlayer/machine.h"
#include "wizard_fixture.h"

namespace {

struct Computer {
    Computer() { machine->shell.answerWith(33); }

    winlayer::ScopedMachine machine;
    HostModule host{"whole"};
};

class Options : private Computer, public WizardTest {
protected:
    Options() { goToOptions(); }

    using Computer::host;
    using Computer::machine;

    void installIn(const char* directory) {
        PropertySection section;
        section.Open("GlobalProperties", 1);
        section.SetValue("InstallDir", directory);
    }
    void choose(int option) {
        SendMessageA(control(IDC_START_PRODUCT), BM_SETCHECK, BST_UNCHECKED, 0);
        SendMessageA(control(option), BM_SETCHECK, BST_CHECKED, 0);
        hostLog.take();
        press(wizard::nextCommand);
    }
    winlayer::ShellRequest lastRequest() {
        return machine->shell.requests().empty() ? winlayer::ShellRequest{}
                                                 : machine->shell.requests().back();
    }
};

TEST_F(Options, TheProductStartsFromItsDirectory) {
    const struct {
        const char* directory;
        const char* program;
    } rows[] = {{"C:\\Mendwell", "C:\\Mendwell\\MwWin.exe"},
                {"C:\\Mendwell\\", "C:\\Mendwell\\MwWin.exe"},
                {"", "MwWin.exe"}};
    for (const auto& row : rows) {
        installIn(row.directory);
        choose(IDC_START_PRODUCT);
        EXPECT_EQ(lastRequest().operation, "open");
        EXPECT_EQ(lastRequest().file, row.program);
        EXPECT_EQ(lastRequest().directory, row.directory);
        EXPECT_EQ(lastRequest().show, SW_SHOW);
        EXPECT_EQ(hostLog.take(), (Lines{"before show", "current 0", "buttons 21A", "home 1"}));
    }
}

TEST_F(Options, TheWebPageOpensInTheBrowser) {
    choose(IDC_BUY_PRODUCT);
    EXPECT_TRUE(lastRequest().file.starts_with("http://"));
    EXPECT_TRUE(lastRequest().file.ends_with("/mendwell/"));
    EXPECT_EQ(lastRequest().directory, "");
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::optionsPage);
}

TEST_F(Options, WhatCannotBeStartedIsTold) {
    machine->shell.answerWith(32);
    choose(IDC_START_PRODUCT);
    EXPECT_EQ(hostLog.take().front(),
              "box CBSTR DEFAULT PRODUCT NAME [0] Fehler beim Starten von Mendwell Ostrel!");
    choose(IDC_BUY_PRODUCT);
    EXPECT_EQ(hostLog.take().front(),
              "box CBSTR DEFAULT PRODUCT NAME [0] Fehler beim Starten Ihres Internet-Browsers!");
}

TEST_F(Options, AHostThatIsNotReadyLeavesTheDirectoryEmpty) {
    installIn("C:\\Mendwell");
    ResetEvent(host->readyEvent);
    choose(IDC_START_PRODUCT);
    EXPECT_EQ(lastRequest().file, "MwWin.exe");
    SetEvent(host->readyEvent);
}

TEST_F(Options, TheProductPageShowsItsTextThroughTheHost) {
    close();
    host.log();
    open();
    EXPECT_EQ(host.log(), "create alone 5\nattach 1029\nstream 2 {\\rtf1\n");
    EXPECT_EQ(host->liveObjects, 0);
}

}  // namespace
