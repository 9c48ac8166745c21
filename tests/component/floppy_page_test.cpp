// The emergency-disk page without a disk: its hooks, its commands at rest, and attempts that find no drive.
#include <gtest/gtest.h>

#include "Include/ansi_literal.h"
#include "component/entry_points.h"
#include "component/resources/resource.h"
#include "wizard_fixture.h"

namespace {

using namespace UTILS::literals;

const std::string noDrive =
    "box Systemfehler [30] Kein geeignetes Diskettenlaufwerk gefunden. Sie benötigen ein Laufwerk für "
    "1,44-MB-Disketten.";
const std::string driveErrorText =
    "Fehler beim Zugriff auf das Diskettenlaufwerk.\nVergewissern Sie sich, dass eine Diskette eingelegt ist "
    "und der "
    "Schreibschutz entfernt ist.";

class FloppyPage : public WizardTest {
protected:
    FloppyPage() { goToFloppy(); }

    bool atRest() const { return text(IDC_RUNNING_TEXT).starts_with("Zur Erstellung"); }
    bool making() const { return text(IDC_RUNNING_TEXT).ends_with("Bitte warten..."); }
    bool stopped() const { return text(IDC_RUNNING_TEXT).find("gestoppt") != std::string::npos; }
    // Leaves a button's command in the queue, for the attempt to come upon.
    void post(WORD command) const { PostMessageA(frame.page(), WM_COMMAND, command, 0); }
};

TEST_F(FloppyPage, TheSliderGoesToPlacesAndBySteps) {
    floppy().MoveSlider(0, 0);
    floppy().MoveSlider(0, 5);
    floppy().MoveSlider(1, 40);
    floppy().MoveSlider(0, -2);
    EXPECT_EQ(hostLog.take(), (Lines{"position 3", "position 8", "position 40", "position 38"}));
    EXPECT_EQ(floppy().GetSliderPos(), 38);
    send(WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(floppy().GetSliderPos(), 0);
}

TEST_F(FloppyPage, StatusTextsReachTheFrameAndLetMessagesThrough) {
    post(wizard::helpCommand);
    floppy().UPDATE_WINDOW("Datenträger"_ansi, 0);
    EXPECT_EQ(hostLog.take(), (Lines{"status Datenträger", "help 802"}));
    floppy().UPDATE_WINDOW(nullptr, 0);
    EXPECT_EQ(hostLog.take(), Lines{"status "});
}

TEST_F(FloppyPage, TheLibrarysHooksAreTheSame) {
    Extract_ZAR& library = floppy();
    library.UPDATE_WINDOW("Text", 0);
    library.MoveSlider(1, 7);
    EXPECT_EQ(hostLog.take(), (Lines{"status Text", "position 7"}));
}

TEST_F(FloppyPage, TheEndOfTheProgramReachesTheLoopBelow) {
    PostQuitMessage(42);
    floppy().UPDATE_WINDOW("", 0);
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) {
    }
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 42U);
}

TEST_F(FloppyPage, ErrorsAreShownByTheirKind) {
    CDlgFloppy& page = floppy();
    page.SHOW_ERROR(5, 100, "Fehler beim Schreiben des Bootsektors");
    EXPECT_EQ(hostLog.take(), Lines{"box Systemfehler [30] Fehler beim Schreiben des Bootsektors"})
        << "at rest nothing else";
    page.SHOW_ERROR(5, 200, "Fehler beim Laufwerkzugriff");
    page.SHOW_ERROR(5, 200, "Fehler beim Öffnen des Laufwerks"_ansi);
    page.SHOW_ERROR(5, 200, "Fehler beim laufwerkzugriff");
    EXPECT_EQ(hostLog.take(),
              (Lines{"box Laufwerkfehler [30] " + driveErrorText, "box Laufwerkfehler [30] " + driveErrorText,
                     "box Fehler [30] Fehler beim laufwerkzugriff"}));
    page.SHOW_ERROR(5, 201, "nie");
    EXPECT_EQ(hostLog.take(), Lines{});
    EXPECT_EQ(page.State(), PageState::Ready);
}

TEST_F(FloppyPage, AnUnknownErrorRestartsThePage) {
    SetWindowTextA(control(IDC_RUNNING_TEXT), "?");
    floppy().SHOW_ERROR(0, 300, "egal");
    EXPECT_EQ(hostLog.take(), (Lines{"box Systemfehler [30] Ein unbekannter Systemfehler ist aufgetreten.",
                                     "before show", "current 0", "range 0 0", "buttons 21A", "home 1"}));
    EXPECT_TRUE(atRest());
    EXPECT_EQ(floppy().State(), PageState::Ready);
}

TEST_F(FloppyPage, BackFinishAndCancelAtRest) {
    press(wizard::backCommand);
    EXPECT_EQ(hostLog.take(),
              (Lines{"position 0", "before show", "current 0", "range 0 0", "buttons 21A", "home 1"}));
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::optionsPage);
    press(wizard::nextCommand);
    floppy().MoveSlider(1, 50);
    hostLog.take();
    press(wizard::finishCommand);
    EXPECT_EQ(hostLog.take(), (Lines{"before show", "current 0", "range 0 0", "buttons 21A", "home 1"}));
    EXPECT_EQ(floppy().GetSliderPos(), 50) << "kept until the page is entered again";
    press(wizard::nextCommand);
    EXPECT_EQ(floppy().GetSliderPos(), 0);
    hostLog.take();
    press(wizard::cancelCommand);
    pump();
    EXPECT_EQ(hostLog.take(), (Lines{"range 0 0", "leave"}));
}

TEST_F(FloppyPage, WithoutADriveTheAttemptEndsAtOnce) {
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.take(),
              (Lines{"range 0 100", "position 0", "status ", "buttons 1A", "enable 0 disable 1A", "home 0",
                     "position 0", "status Diskettenlaufwerk wird gesucht...",
                     "status Diskettenlaufwerke werden gesucht...", noDrive, "position 0", "status ",
                     "range 0 0", "buttons 282", "enable 282 disable 0", "enable 21A disable 0", "home 1"}));
    EXPECT_TRUE(making()) << "the text stays";
    EXPECT_EQ(floppy().State(), PageState::Ready);
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count(noDrive), 1) << "a press is an attempt again";
}

TEST_F(FloppyPage, NextWithinAnAttemptStartsNoSecond) {
    post(wizard::nextCommand);
    hostLog.duringBox = [this] { press(wizard::nextCommand); };
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.count("range 0 100"), 1);
    EXPECT_EQ(hostLog.count("buttons 282"), 1);
}

TEST_F(FloppyPage, CancelWithinAnAttemptEndsItAndLeaves) {
    post(wizard::cancelCommand);
    press(wizard::nextCommand);
    EXPECT_TRUE(stopped());
    const Lines lines = hostLog.take();
    EXPECT_EQ(lines[lines.size() - 2], "home 1") << "the attempt has ended";
    EXPECT_EQ(lines.back(), "range 0 0");
    pump();
    EXPECT_EQ(hostLog.take(), Lines{"leave"});
    EXPECT_EQ(floppy().State(), PageState::Ready);
    press(wizard::nextCommand);
    EXPECT_TRUE(making()) << "the next attempt is not stopped by what stopped the last";
}

TEST_F(FloppyPage, BackAndFinishWithinAnAttemptShowTheOptionsWhenItHasEnded) {
    for (const WORD command : {wizard::backCommand, wizard::finishCommand}) {
        post(command);
        press(wizard::nextCommand);
        const Lines lines = hostLog.take();
        EXPECT_EQ((Lines{lines.end() - 5, lines.end()}),
                  (Lines{"before show", "current 0", "range 0 0", "buttons 21A", "home 1"}));
        EXPECT_EQ(ui->CurrentPage(), ComponentUI::optionsPage);
        press(wizard::nextCommand);
        EXPECT_TRUE(atRest());
        hostLog.take();
    }
}

TEST_F(FloppyPage, DestroyWithinAnAttemptTakesTheWindowsAtOnce) {
    const HWND page = frame.page();
    const HWND frameWindow = frame.window();
    ComponentUI* const destroyed = ui;
    hostLog.duringBox = [&] {
        EXPECT_EQ(DestroyComponentUI(destroyed, 0), 1);
        EXPECT_FALSE(IsWindow(page));
        DestroyWindow(frameWindow);
        hostLog.take();
    };
    SendMessageA(page, WM_COMMAND, wizard::nextCommand, 0);
    EXPECT_EQ(hostLog.take(), Lines{}) << "nothing is told to what is gone";
    ui = nullptr;
}

TEST_F(FloppyPage, AWindowClosedWithinAnAttemptIsNotUsedAgain) {
    hostLog.duringBox = [this] {
        DestroyWindow(frame.page());
        hostLog.take();
    };
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.take(), Lines{});
}

}  // namespace
