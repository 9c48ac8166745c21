#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "Include/ansi_literal.h"
#include "support/dialog_bytes.h"
#include "support/window_recorder.h"

namespace {

using namespace UTILS::literals;

constexpr WORD button = 0x80;
constexpr WORD label = 0x82;
constexpr DWORD shown = WS_VISIBLE;
constexpr DWORD stop = WS_VISIBLE | WS_TABSTOP;

using Commands = std::vector<std::pair<WORD, WORD>>;  // identifier and notification

// What the dialog procedure under test sees and answers.
struct Procedure {
    Commands commands;
    std::vector<UINT> messages;
    WPARAM initialFocus = 0;
    LPARAM parameter = 0;
    std::map<UINT, INT_PTR> answers;
    LRESULT messageResult = 0;
    UINT endOn = 0;  // identifier that ends a modal dialog
};
Procedure* current;

INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    current->messages.push_back(message);
    if (message == WM_INITDIALOG) {
        current->initialFocus = wParam;
        current->parameter = lParam;
        if (current->endOn == IDABORT) {
            PostMessageA(dialog, WM_COMMAND, IDABORT, 0);
        }
    } else if (message == WM_COMMAND) {
        current->commands.emplace_back(LOWORD(wParam), HIWORD(wParam));
        if (LOWORD(wParam) == current->endOn) {
            EndDialog(dialog, 77);
        }
    } else if (message == WM_APP) {
        SetWindowLongPtrA(dialog, DWLP_MSGRESULT, current->messageResult);
    }
    const auto found = current->answers.find(message);
    return found != current->answers.end() ? found->second : FALSE;
}

DialogDescription plainDialog() {
    DialogDescription dialog{WS_POPUP | WS_CAPTION | DS_SETFONT | shown, 0, 0, 0, 200, 100, "Titel", {}};
    dialog.controls = {
        {label, "", "&Erste", shown | WS_GROUP, 0, 0, 40, 10, 100},
        {button, "", "A&us", stop | BS_AUTORADIOBUTTON | WS_GROUP, 4, 8, 40, 10, 101},
        {button, "", "&Zwei", shown | BS_AUTORADIOBUTTON, 4, 20, 40, 10, 102},
        {button, "", "D&rei", shown | BS_AUTORADIOBUTTON, 4, 32, 40, 10, 103},
        {button, "", "&Haken", stop | BS_AUTOCHECKBOX | WS_GROUP, 4, 44, 40, 10, 104},
        {button, "", "&Verborgen", WS_TABSTOP | BS_PUSHBUTTON, 4, 56, 40, 10, 105},
        {button, "", "&OK", stop | BS_DEFPUSHBUTTON, 4, 68, 40, 14, IDOK},
        {button, "", "Abbrechen", stop | BS_PUSHBUTTON, 50, 68, 40, 14, IDCANCEL},
    };
    return dialog;
}

class Dialogs : public ::testing::Test {
protected:
    void SetUp() override { current = &procedure_; }
    void TearDown() override {
        DestroyWindow(dialog_);
        pumpMessages();
    }

    void create(const DialogDescription& description, bool extended = false, HWND parent = nullptr) {
        const auto bytes = dialogBytes(description, extended);
        dialog_ = CreateDialogIndirectParamA(nullptr, asTemplate(bytes), parent, dialogProcedure, 1234);
        ASSERT_NE(dialog_, nullptr);
    }
    HWND item(int id) const { return GetDlgItem(dialog_, id); }
    // Sends a key or character through IsDialogMessageA as a message loop would.
    void key(UINT message, WPARAM key) const {
        MSG input{GetFocus(), message, key, 1, 0, {}};
        IsDialogMessageA(dialog_, &input);
    }
    std::string checks() const {
        std::string text;
        for (const int id : {101, 102, 103}) {
            text += IsDlgButtonChecked(dialog_, id) == BST_CHECKED ? 'x' : '-';
        }
        return text;
    }

    Procedure procedure_;
    HWND dialog_ = nullptr;
};

// Both forms of template give the same dialog; 4 x 8 dialog units are 6 x 13 pixels of this font.
TEST_F(Dialogs, TemplatesOfBothFormsGiveTheSameDialog) {
    for (const bool extended : {false, true}) {
        SCOPED_TRACE(extended);
        DialogDescription description = plainDialog();
        description.controls[4].title = "Grüße"_ansi;
        create(description, extended);
        char text[32] = "";
        GetWindowTextA(dialog_, text, sizeof text);
        EXPECT_STREQ(text, "Titel");
        GetDlgItemTextA(dialog_, 104, text, sizeof text);
        EXPECT_STREQ(text, "Grüße"_ansi);
        EXPECT_EQ(procedure_.parameter, 1234);
        EXPECT_EQ(reinterpret_cast<HWND>(procedure_.initialFocus), item(101));
        RECT rectangle{0, 0, 40, 80};
        EXPECT_TRUE(MapDialogRect(dialog_, &rectangle));
        const LONG unitX = rectangle.right / 10;
        const LONG unitY = rectangle.bottom / 10;
        RECT client{};
        GetClientRect(dialog_, &client);
        EXPECT_EQ(client.right, 50 * unitX);
        EXPECT_EQ(client.bottom, (100 * unitY + 4) / 8);
        GetWindowRect(item(102), &rectangle);
        MapWindowPoints(nullptr, dialog_, reinterpret_cast<POINT*>(&rectangle), 2);
        EXPECT_EQ(rectangle.left, unitX);
        EXPECT_EQ(rectangle.top, (20 * unitY + 4) / 8);
        EXPECT_EQ(rectangle.right - rectangle.left, 10 * unitX);
        EXPECT_EQ(rectangle.bottom - rectangle.top, (10 * unitY + 4) / 8);
        DestroyWindow(dialog_);
    }
}

TEST_F(Dialogs, TheProcedureHearsOfItsWindowBeforeItIsShown) {
    create(plainDialog());
    const auto place = [&](UINT message) {
        return std::find(procedure_.messages.begin(), procedure_.messages.end(), message) -
               procedure_.messages.begin();
    };
    EXPECT_LT(place(WM_SETFONT), place(WM_INITDIALOG));
    EXPECT_LT(place(WM_INITDIALOG), place(WM_SHOWWINDOW));
    EXPECT_EQ(std::count(procedure_.messages.begin(), procedure_.messages.end(), UINT{WM_CREATE}), 0);
}

TEST_F(Dialogs, AnswersGoThroughTheMessageResult) {
    create(plainDialog());
    procedure_.messageResult = 55;
    EXPECT_EQ(SendMessageA(dialog_, WM_APP, 0, 0), 0);  // not handled: the result does not count
    procedure_.answers[WM_APP] = TRUE;
    EXPECT_EQ(SendMessageA(dialog_, WM_APP, 0, 0), 55);
    EXPECT_EQ(SetWindowLongPtrA(dialog_, DWLP_USER, 8), 0);
    EXPECT_EQ(GetWindowLongPtrA(dialog_, DWLP_USER), 8);
    EXPECT_EQ(GetWindowLongPtrA(dialog_, DWLP_DLGPROC), reinterpret_cast<LONG_PTR>(&dialogProcedure));
}

TEST_F(Dialogs, AGroupOfRadioButtonsHasOneChecked) {
    create(plainDialog());
    SendMessageA(item(102), BM_CLICK, 0, 0);
    EXPECT_EQ(checks(), "-x-");
    EXPECT_EQ(procedure_.commands, (Commands{{WORD{102}, WORD{BN_CLICKED}}}));
    SendMessageA(item(103), BM_CLICK, 0, 0);
    EXPECT_EQ(checks(), "--x");
    EXPECT_EQ(SendMessageA(item(103), BM_GETCHECK, 0, 0), 1);
    SendMessageA(item(101), BM_SETCHECK, BST_CHECKED, 0);  // sets this one and no other
    EXPECT_EQ(checks(), "x-x");
    SendMessageA(item(102), BM_CLICK, 0, 0);
    EXPECT_EQ(checks(), "-x-");
    const auto stops = [&](int id) {
        return (static_cast<DWORD>(GetWindowLongA(item(id), GWL_STYLE)) & WS_TABSTOP) != 0;
    };
    EXPECT_TRUE(stops(102));
    EXPECT_FALSE(stops(101));
    SendMessageA(item(104), BM_CLICK, 0, 0);
    EXPECT_EQ(IsDlgButtonChecked(dialog_, 104), UINT{BST_CHECKED});
    SendMessageA(item(104), BM_CLICK, 0, 0);
    EXPECT_EQ(IsDlgButtonChecked(dialog_, 104), UINT{BST_UNCHECKED});
    EXPECT_EQ(checks(), "-x-");
}

TEST_F(Dialogs, TheTabKeyStopsAtWhatIsShownAndEnabled) {
    create(plainDialog());
    SetFocus(item(101));
    for (const int id : {104, IDOK, IDCANCEL, 101, 104}) {
        key(WM_KEYDOWN, VK_TAB);
        EXPECT_EQ(GetFocus(), item(id)) << id;
    }
    EnableWindow(item(IDOK), FALSE);
    key(WM_KEYDOWN, VK_TAB);
    EXPECT_EQ(GetFocus(), item(IDCANCEL));
    EXPECT_EQ(GetNextDlgTabItem(dialog_, item(IDCANCEL), TRUE), item(104));
    EXPECT_EQ(GetNextDlgTabItem(dialog_, item(104), TRUE), item(101));
}

TEST_F(Dialogs, ArrowsChooseWithinTheGroup) {
    create(plainDialog());
    SendMessageA(item(101), BM_CLICK, 0, 0);
    procedure_.commands.clear();
    key(WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(GetFocus(), item(102));
    EXPECT_EQ(checks(), "-x-");
    EXPECT_EQ(procedure_.commands, (Commands{{WORD{102}, WORD{BN_CLICKED}}}));
    key(WM_KEYDOWN, VK_RIGHT);
    key(WM_KEYDOWN, VK_RIGHT);
    EXPECT_EQ(checks(), "x--");
    key(WM_KEYDOWN, VK_UP);
    EXPECT_EQ(checks(), "--x");
}

TEST_F(Dialogs, MnemonicsChoose) {
    create(plainDialog());
    SetFocus(item(IDCANCEL));
    key(WM_CHAR, 'z');
    EXPECT_EQ(checks(), "-x-");
    EXPECT_EQ(GetFocus(), item(102));
    key(WM_SYSCHAR, 'H');
    EXPECT_EQ(IsDlgButtonChecked(dialog_, 104), UINT{BST_CHECKED});
    EnableWindow(item(103), FALSE);
    key(WM_CHAR, 'r');
    EXPECT_EQ(checks(), "-x-");
    procedure_.commands.clear();
    key(WM_CHAR, 'v');  // hidden
    EXPECT_TRUE(procedure_.commands.empty());
    key(WM_CHAR, 'o');
    EXPECT_EQ(procedure_.commands, (Commands{{WORD{IDOK}, WORD{BN_CLICKED}}}));
    SendMessageA(item(101), BM_CLICK, 0, 0);
    SetFocus(item(IDCANCEL));
    key(WM_CHAR, 'e');  // a label stands for what follows it
    EXPECT_EQ(GetFocus(), item(101));
}

TEST_F(Dialogs, EnterPressesTheDefaultButtonAndEscapeCancels) {
    create(plainDialog());
    EXPECT_EQ(SendMessageA(dialog_, DM_GETDEFID, 0, 0), MAKELONG(IDOK, DC_HASDEFID));
    SetFocus(item(104));
    key(WM_KEYDOWN, VK_RETURN);
    SendMessageA(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(item(IDCANCEL)), TRUE);
    EXPECT_NE(SendMessageA(item(IDCANCEL), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON, 0);
    EXPECT_EQ(SendMessageA(item(IDOK), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON, 0);
    key(WM_KEYDOWN, VK_RETURN);
    SendMessageA(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(item(104)), TRUE);
    EXPECT_NE(SendMessageA(item(IDOK), WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON, 0);
    key(WM_KEYDOWN, VK_ESCAPE);
    SendMessageA(dialog_, DM_SETDEFID, IDCANCEL, 0);
    key(WM_KEYDOWN, VK_RETURN);
    SendMessageA(dialog_, WM_CLOSE, 0, 0);
    pumpMessages();
    const Commands::value_type cancel{WORD{IDCANCEL}, WORD{BN_CLICKED}};
    EXPECT_EQ(procedure_.commands,
              (Commands{{WORD{IDOK}, WORD{BN_CLICKED}}, cancel, cancel, cancel, cancel}));
}

TEST_F(Dialogs, ADialogWithAFaultyControlIsMadeOnlyWhenAllowed) {
    DialogDescription description = plainDialog();
    description.controls.push_back({0, "NoSuchControl", "", shown, 0, 0, 5, 5, 300});
    auto bytes = dialogBytes(description, false);
    EXPECT_EQ(CreateDialogIndirectParamA(nullptr, asTemplate(bytes), nullptr, dialogProcedure, 0), nullptr);
    description.style |= DS_NOFAILCREATE;
    create(description);
    EXPECT_EQ(item(300), nullptr);
    EXPECT_NE(item(IDOK), nullptr);
}

// A page inside a frame: a child that stays hidden until it is shown, whose controls the frame's Tab reaches.
TEST_F(Dialogs, AChildDialogLivesInItsParent) {
    WindowRecorder recorder;
    const HWND frame = recorder.create(WS_POPUP | WS_VISIBLE, {0, 0, 400, 300});
    DialogDescription page = plainDialog();
    page.style = WS_CHILD | DS_CONTROL | DS_3DLOOK | DS_SETFONT;
    page.x = 4;
    page.y = 8;
    create(page, true, frame);
    EXPECT_EQ(GetParent(dialog_), frame);
    EXPECT_FALSE(IsWindowVisible(dialog_));
    EXPECT_NE(static_cast<DWORD>(GetWindowLongA(dialog_, GWL_EXSTYLE)) & WS_EX_CONTROLPARENT, 0u);
    POINT origin{0, 0};
    MapWindowPoints(dialog_, frame, &origin, 1);
    RECT unit{0, 0, 4, 8};
    MapDialogRect(dialog_, &unit);
    EXPECT_EQ(origin.x, unit.right);
    EXPECT_EQ(origin.y, unit.bottom);
    ShowWindow(dialog_, SW_SHOW);
    EXPECT_TRUE(IsWindowVisible(item(101)));
    EXPECT_EQ(GetNextDlgTabItem(frame, nullptr, FALSE), item(101));
    EXPECT_TRUE(EndDialog(dialog_, 0));  // only hides one that is not modal
    EXPECT_TRUE(IsWindow(dialog_));
    EXPECT_FALSE(IsWindowVisible(dialog_));
    DestroyWindow(frame);
}

TEST_F(Dialogs, AModalDialogKeepsItsOwnerWaiting) {
    WindowRecorder recorder;
    const HWND owner = recorder.create(WS_POPUP | WS_VISIBLE, {0, 0, 400, 300});
    recorder.clear();
    procedure_.endOn = IDABORT;
    const auto bytes = dialogBytes(plainDialog(), false);
    EXPECT_EQ(DialogBoxIndirectParamA(nullptr, asTemplate(bytes), owner, dialogProcedure, 5), 77);
    EXPECT_EQ(recorder.take({WM_ENABLE}, owner), "enable enable");
    EXPECT_TRUE(IsWindowEnabled(owner));
    const auto& messages = procedure_.messages;
    EXPECT_EQ(std::count(messages.begin(), messages.end(), UINT{WM_NCDESTROY}), 1);
    DestroyWindow(owner);
}

TEST_F(Dialogs, AModalDialogPassesTheEndOfTheLoopOn) {
    PostQuitMessage(9);
    const auto bytes = dialogBytes(plainDialog(), false);
    DialogBoxIndirectParamA(nullptr, asTemplate(bytes), nullptr, dialogProcedure, 0);
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, WPARAM{9});
}

}  // namespace
