// What each page sets up, shows, lays out and answers, and in which order it speaks to the frame.
#include <gtest/gtest.h>

#include "component/PagePicture.h"
#include "component/entry_points.h"
#include "component/resources/resource.h"
#include "wizard_fixture.h"

namespace {

class Pages : public WizardTest {};

TEST_F(Pages, TheProductPageComesFirst) {
    EXPECT_EQ(hostLog.take(), (Lines{"subclass", "buttons 212", "home 1", "before show", "current 0"}));
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::productPage);
    EXPECT_TRUE(IsWindowVisible(frame.page()));
    EXPECT_NE(GetPropA(frame.page(), "QX_AWDC"), nullptr);
    EXPECT_EQ(CreateConfigUI(1, 2), 0U);
}

TEST_F(Pages, TheProductPageKeepsItsTextsHeight) {
    RECT client{};
    GetClientRect(control(IDC_RICH_TEXT), &client);
    const std::string height = std::to_string(client.bottom);
    EXPECT_EQ(place(IDC_PICTURE), "200,0 100x60");
    EXPECT_EQ(place(IDC_RICH_TEXT), "50,72 400x" + height);
    frame.resize(333, 207);
    EXPECT_EQ(place(IDC_PICTURE), "133,0 66x41");
    EXPECT_EQ(place(IDC_RICH_TEXT), "33,49 266x" + height);
}

TEST_F(Pages, TheProductPageLeavesByBackAndCancel) {
    hostLog.take();
    press(wizard::backCommand);
    press(wizard::cancelCommand);
    EXPECT_EQ(hostLog.take(), Lines{}) << "posted";
    pump();
    EXPECT_EQ(hostLog.take(), (Lines{"leave", "leave"}));
    press(wizard::helpCommand);
    EXPECT_EQ(hostLog.take(), Lines{"help 802"});
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::productPage);
}

TEST_F(Pages, TheOptionsPageComesNext) {
    const HWND product = frame.page();
    hostLog.take();
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.take(), (Lines{"subclass", "heading font", "buttons 21A", "home 1", "before show",
                                     "current 0", "buttons 21A", "home 1"}));
    EXPECT_FALSE(IsWindowVisible(product));
    EXPECT_TRUE(IsWindowVisible(frame.page()));
    EXPECT_EQ(IsDlgButtonChecked(frame.page(), IDC_START_PRODUCT), 1U);
    EXPECT_EQ(text(IDC_HEADING), "Wählen Sie eine Option und klicken Sie auf 'Weiter', um fortzufahren.");
    EXPECT_TRUE(text(IDC_HINT).starts_with("Diese Option startet die Windows-Version"));
}

TEST_F(Pages, TheHeadingTakesTheFramesFont) {
    frame.headingFont = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    goToOptions();
    EXPECT_EQ(SendMessageA(control(IDC_HEADING), WM_GETFONT, 0, 0),
              reinterpret_cast<LRESULT>(frame.headingFont));
}

TEST_F(Pages, EveryOptionHasItsHint) {
    goToOptions();
    press(IDC_BUY_PRODUCT);
    EXPECT_EQ(
        text(IDC_HINT),
        "Diese Option stellt eine Verbindung zur Website von Quarvel her. Dort können Sie die Vollversionen "
        "von "
        "Mendwell Vantra und Mendwell Quellis kaufen. Mit den Vollversionen von Mendwell können Sie pro "
        "Sitzung eine unbegrenzte Anzahl an Dateien wiederherstellen.");
    press(IDC_MAKE_DISK);
    EXPECT_TRUE(text(IDC_HINT).ends_with("auf dem sich Windows nicht mehr starten lässt."));
    press(IDC_START_PRODUCT);
    EXPECT_TRUE(text(IDC_HINT).ends_with("Dateien wiederherstellen können."));
    const std::string kept = text(IDC_HINT);
    send(WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(text(IDC_HINT), kept);
}

TEST_F(Pages, TheOptionsAreStackedFromTheBottom) {
    goToOptions();
    const auto height = [&](int id) {
        RECT place{};
        GetWindowRect(control(id), &place);
        return static_cast<int>(place.bottom - place.top);
    };
    const auto topOf = [&](int id) {
        const std::string text = place(id);
        return std::stoi(text.substr(text.find(',') + 1));
    };
    const auto leftOf = [&](int id) { return std::stoi(place(id)); };
    for (const int frameHeight : {300, 411}) {
        frame.resize(500, frameHeight);
        int top = frameHeight - 8 - height(IDC_HINT);
        EXPECT_EQ(topOf(IDC_HINT), top);
        EXPECT_EQ(topOf(IDC_BUY_PRODUCT), top -= 8 + height(IDC_BUY_PRODUCT));
        EXPECT_EQ(topOf(IDC_MAKE_DISK), top -= 4 + height(IDC_MAKE_DISK));
        EXPECT_EQ(topOf(IDC_START_PRODUCT), top -= 4 + height(IDC_START_PRODUCT));
        for (const int id : {IDC_HINT, IDC_BUY_PRODUCT, IDC_MAKE_DISK, IDC_START_PRODUCT}) {
            EXPECT_EQ(leftOf(id), 8);
        }
        EXPECT_EQ(place(IDC_HEADING).substr(0, 4), "0,0 ");
        const int heading = height(IDC_HEADING);
        EXPECT_EQ(place(IDC_PICTURE),
                  "0," + std::to_string(heading) + " 500x" + std::to_string(top - heading));
    }
}

TEST_F(Pages, WithoutAChoiceTheOptionsComeAgain) {
    goToOptions();
    SendMessageA(control(IDC_START_PRODUCT), BM_SETCHECK, BST_UNCHECKED, 0);
    hostLog.take();
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.take(), (Lines{"before show", "current 0", "buttons 21A", "home 1"}));
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::optionsPage);
    EXPECT_TRUE(IsWindowVisible(frame.page()));
}

TEST_F(Pages, TheOptionsLeadBackAndOut) {
    goToOptions();
    const HWND options = frame.page();
    press(wizard::cancelCommand);
    hostLog.take();
    pump();
    EXPECT_EQ(hostLog.take(), Lines{"leave"});
    press(wizard::backCommand);
    EXPECT_EQ(hostLog.take(), (Lines{"before show", "current 0", "buttons 212", "home 1"}));
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::productPage);
    EXPECT_FALSE(IsWindowVisible(options));
    press(wizard::nextCommand);
    EXPECT_EQ(frame.page(), options) << "pages are made once";
}

TEST_F(Pages, TheFloppyPageComesThird) {
    goToOptions();
    press(IDC_MAKE_DISK);
    SendMessageA(control(IDC_START_PRODUCT), BM_SETCHECK, BST_UNCHECKED, 0);
    SendMessageA(control(IDC_MAKE_DISK), BM_SETCHECK, BST_CHECKED, 0);
    hostLog.take();
    press(wizard::nextCommand);
    EXPECT_EQ(hostLog.take(), (Lines{"subclass", "buttons 21A", "home 1", "before show", "current 0",
                                     "buttons 21A", "home 1"}));
    EXPECT_EQ(text(IDC_RUNNING_TEXT),
              "Zur Erstellung der Mendwell Ostrel-Notfalldiskette benötigen Sie eine formatierte 1,44 "
              "MB-Diskette.\n\nLegen Sie die Diskette in das Diskettenlaufwerk ein und klicken Sie auf "
              "'Weiter', um "
              "fortzufahren.");
    EXPECT_EQ(floppy().State(), PageState::Ready);
    HWND window = nullptr;
    floppy().GET_MESSAGE_WND(window);
    EXPECT_EQ(window, frame.page());
}

TEST_F(Pages, TheFloppyPagesTextLiesAtTheBottom) {
    goToFloppy();
    RECT text{};
    GetWindowRect(control(IDC_RUNNING_TEXT), &text);
    const int height = static_cast<int>(text.bottom - text.top);
    for (const int frameHeight : {300, 200}) {
        frame.resize(480, frameHeight);
        const int top = frameHeight - 8 - height;
        EXPECT_EQ(place(IDC_RUNNING_TEXT), "8," + std::to_string(top) + " 472x" + std::to_string(height));
        EXPECT_EQ(place(IDC_PICTURE), "0,0 480x" + std::to_string(top));
    }
    PostMessageA(frame.page(), WM_COMMAND, wizard::cancelCommand, 0);
    press(wizard::nextCommand);
    GetWindowRect(control(IDC_RUNNING_TEXT), &text);
    const int grown = static_cast<int>(text.bottom - text.top);
    EXPECT_GT(grown, height) << "the text of a stopped attempt has more lines";
    EXPECT_EQ(place(IDC_RUNNING_TEXT), "8," + std::to_string(192 - grown) + " 472x" + std::to_string(grown));
    EXPECT_EQ(place(IDC_PICTURE), "0,0 480x" + std::to_string(192 - grown));
    send(WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(place(IDC_PICTURE), "0,0 480x" + std::to_string(192 - height));
}

TEST_F(Pages, APageThatIsNoneChangesNothing) {
    const HWND product = frame.page();
    hostLog.take();
    EXPECT_EQ(ui->ShowPage(3, 0), -1);
    EXPECT_EQ(ui->ShowPage(-1, 0), -1);
    EXPECT_TRUE(IsWindowVisible(product));
    EXPECT_EQ(hostLog.take(), Lines{});
    EXPECT_EQ(ui->ShowPage(ComponentUI::productPage, 77), 0);
    EXPECT_EQ(hostLog.take(), (Lines{"before show", "current 77"}));
}

TEST_F(Pages, UnknownMessagesAreTheDialogManagers) {
    const auto procedure = reinterpret_cast<DLGPROC>(GetWindowLongPtrA(frame.page(), DWLP_DLGPROC));
    EXPECT_EQ(procedure(frame.page(), WM_COMMAND, 4711, 0), FALSE);
    EXPECT_EQ(procedure(frame.page(), WM_USER + 5, 0, 0), FALSE);
    EXPECT_EQ(procedure(frame.page(), WM_ACTIVATE, WA_ACTIVE, 0), 1);
    EXPECT_EQ(procedure(frame.window(), WM_ACTIVATE, WA_ACTIVE, 0), FALSE) << "a window without an object";
}

TEST_F(Pages, DestroyingClosesEveryPage) {
    const HWND product = frame.page();
    goToFloppy();
    const HWND floppyWindow = frame.page();
    close();
    EXPECT_FALSE(IsWindow(product));
    EXPECT_FALSE(IsWindow(floppyWindow));
    EXPECT_EQ(DestroyComponentUI(nullptr, 5), 1);
    open();
    EXPECT_EQ(ui->Page(ComponentUI::floppyPage), nullptr);
    EXPECT_NE(ui->Page(ComponentUI::productPage), nullptr);
}

TEST_F(Pages, TwoUserInterfacesAreIndependent) {
    FakeFrame other(500, 300);
    const auto second = reinterpret_cast<ComponentUI*>(CreateComponentUI(other.window(), 0));
    goToOptions();
    EXPECT_EQ(second->CurrentPage(), ComponentUI::productPage);
    DestroyComponentUI(second, 0);
    EXPECT_EQ(ui->CurrentPage(), ComponentUI::optionsPage);
    EXPECT_TRUE(IsWindow(frame.page()));
}

TEST_F(Pages, AFrameThatGoesFirstTakesTheWindowsWithIt) {
    goToFloppy();
    const HWND page = frame.page();
    DestroyWindow(frame.window());
    EXPECT_FALSE(IsWindow(page));
    close();
    open();  // for the fixture
    EXPECT_NE(ui, nullptr) << "made also when its page cannot be shown";
}

TEST(PagePicture, FillsWidthOrHeightAndIsCentred) {
    const auto fit = [](RECT place) {
        const RECT drawn = FitPicture(place, 336, 161);
        return std::to_string(drawn.left) + "," + std::to_string(drawn.top) + " " +
               std::to_string(drawn.right - drawn.left) + "x" + std::to_string(drawn.bottom - drawn.top);
    };
    EXPECT_EQ(fit({0, 0, 336, 161}), "0,0 336x161");
    EXPECT_EQ(fit({10, 20, 682, 342}), "10,20 672x322") << "exactly as wide fills the width";
    EXPECT_EQ(fit({0, 0, 500, 100}), "146,0 208x100");
    EXPECT_EQ(fit({0, 5, 100, 105}), "0,31 100x47");
    EXPECT_EQ(fit({0, 10, 100, 20}), "40,10 20x10");
}

}  // namespace
