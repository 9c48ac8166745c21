#include <windows.h>

#include <gtest/gtest.h>

#include "support/dialog_bytes.h"
#include "support/expect_fails.h"
#include "support/window_recorder.h"
#include "winlayer/dialogs/dialog_template.h"
#include "winlayer/machine.h"
#include "winlayer/windows/input.h"

namespace {

using winlayer::ScopedMachine;

constexpr WORD button = 0x80;
constexpr WORD label = 0x82;

// A user who sees the box once the program waits, notes what it shows, and presses keys.
class BoxUser : public winlayer::Peer {
public:
    explicit BoxUser(std::vector<UINT> keys) : keys_(std::move(keys)) {}

    void wait() override {
        if (next_ == keys_.size()) {
            // Nothing left to press: the box must not be there any more.
            ADD_FAILURE() << "the box does not end";
            PostQuitMessage(1);
            return;
        }
        if (next_ == 0) {
            look(GetActiveWindow());
        }
        winlayer::keyDown(keys_[next_]);
        winlayer::keyUp(keys_[next_]);
        ++next_;
    }

    std::string seen;
    LRESULT icon = 0;
    LONG width = 0;

private:
    static std::string textOf(HWND window) {
        char text[200] = "";
        GetWindowTextA(window, text, sizeof text);
        return text;
    }
    void look(HWND box) {
        seen = textOf(box) + ':';
        for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
            const bool isDefault = (SendMessageA(child, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0;
            seen += isDefault ? " [" + textOf(child) + ']' : ' ' + textOf(child);
        }
        icon = SendMessageA(GetDlgItem(box, 20), STM_GETICON, 0, 0);
        RECT place{};
        GetWindowRect(box, &place);
        width = place.right - place.left;
    }

    std::vector<UINT> keys_;
    std::size_t next_ = 0;
};

TEST(MessageBoxMachine, AnswersWithTheButtonThatIsPressed) {
    constexpr WORD german = 0x0407;
    constexpr WORD english = 0x0409;
    const struct {
        UINT style;
        WORD language;
        std::vector<UINT> keys;
        int result;
        const char* seen;
    } rows[] = {
        {MB_OK, german, {VK_RETURN}, IDOK, "Titel: Text [OK]"},
        {MB_OK, german, {VK_ESCAPE}, IDOK, "Titel: Text [OK]"},
        {MB_OKCANCEL, german, {VK_RETURN}, IDOK, "Titel: Text [OK] Abbrechen"},
        {MB_OKCANCEL, german, {VK_ESCAPE}, IDCANCEL, "Titel: Text [OK] Abbrechen"},
        {MB_OKCANCEL, german, {VK_TAB, VK_RETURN}, IDCANCEL, "Titel: Text [OK] Abbrechen"},
        {MB_OKCANCEL | MB_DEFBUTTON2, english, {VK_SPACE}, IDCANCEL, "Titel: Text OK [Cancel]"},
        {MB_YESNO, german, {VK_ESCAPE, 'N'}, IDNO, "Titel: Text [&Ja] &Nein"},
        {MB_YESNOCANCEL, english, {VK_RIGHT, VK_RETURN}, IDNO, "Titel: Text [&Yes] &No Cancel"},
        {MB_ABORTRETRYIGNORE, german, {'W'}, IDRETRY, "Titel: Text [&Abbrechen] &Wiederholen &Ignorieren"},
        {MB_RETRYCANCEL, german, {VK_LEFT, VK_RETURN}, IDCANCEL, "Titel: Text [&Wiederholen] Abbrechen"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.seen);
        ScopedMachine machine;
        machine->language = row.language;
        BoxUser user(row.keys);
        machine->windows.setPeer(&user);
        WindowRecorder recorder;
        const HWND owner = recorder.create(WS_POPUP | WS_VISIBLE, {0, 0, 400, 300});
        EXPECT_EQ(MessageBoxA(owner, "Text", "Titel", row.style), row.result);
        EXPECT_EQ(user.seen, row.seen);
        EXPECT_TRUE(IsWindowEnabled(owner));
        EXPECT_EQ(GetActiveWindow(), owner);
        EXPECT_EQ(machine->windows.count(), 1u);
        EXPECT_EQ(machine->graphics.count(), 0u);
    }
}

TEST(MessageBoxMachine, BreaksLinesBetweenWordsAndHasRoomForEach) {
    const struct {
        std::string text;
        LONG lines;
        LONG columns;
    } cases[] = {
        {"Ja", 1, 2},
        {"", 1, 0},
        {"eins\n\ndrei\n", 4, 4},
        {std::string(30, 'a') + ' ' + std::string(29, 'b'), 1, 60},
        {std::string(30, 'a') + ' ' + std::string(30, 'b'), 2, 30},
        {std::string(40, 'a') + ' ' + std::string(30, 'b') + ' ' + std::string(40, 'c'), 3, 40},
        {std::string(90, 'a') + " b", 2, 90},
    };
    LOGFONTA font{};
    font.lfHeight = -11;
    for (const auto& each : cases) {
        const SIZE extent = winlayer::Peer().textExtent(each.text, font, 360);
        EXPECT_EQ(extent.cy, each.lines * 13) << each.text;
        EXPECT_EQ(extent.cx, each.columns * 6) << each.text;
    }
}

TEST(MessageBoxMachine, IsAsWideAsItsCaptionNeedsAndNoWiderThanTheScreen) {
    const auto widthOf = [](std::size_t letters) {
        ScopedMachine machine;
        BoxUser user({VK_RETURN});
        machine->windows.setPeer(&user);
        MessageBoxA(nullptr, "Text", std::string(letters, 'M').c_str(), MB_OK);
        return user.width;
    };
    EXPECT_GT(widthOf(60), 60 * 6);
    EXPECT_LE(widthOf(600), 1024);
}

TEST(MessageBoxMachine, ShowsItsIconAndRefusesWhatItCannotShow) {
    ScopedMachine machine;
    BoxUser user({VK_RETURN});
    machine->windows.setPeer(&user);
    EXPECT_EQ(MessageBoxA(nullptr, "Text", nullptr, MB_ICONEXCLAMATION), IDOK);
    EXPECT_EQ(user.icon, reinterpret_cast<LRESULT>(IDI_EXCLAMATION));
    EXPECT_EQ(user.seen, "Fehler:  Text [OK]");
    EXPECT_FAILS(MessageBoxA(nullptr, "Text", "", 9), ERROR_INVALID_PARAMETER);
    EXPECT_FAILS(MessageBoxA(reinterpret_cast<HWND>(0x5555), "Text", "", MB_OK), ERROR_INVALID_WINDOW_HANDLE);
}

DialogDescription sample() {
    DialogDescription dialog{WS_CHILD | DS_SETFONT | DS_CONTROL, 0, 1, 2, 259, 176, "", {}};
    dialog.controls = {{label, "", "W\xE4hlen", WS_VISIBLE | SS_SUNKEN, 0, 0, 259, 21, 1020},
                       {button, "", "&Ja", WS_VISIBLE | BS_AUTORADIOBUTTON, 0, 86, 259, 10, 1011},
                       {0, "RICHEDIT", "", WS_VISIBLE, 9, 40, 347, 130, 1029}};
    return dialog;
}

TEST(DialogTemplates, AreReadWholeOrNotAtAll) {
    for (const bool extended : {false, true}) {
        SCOPED_TRACE(extended);
        const auto bytes = dialogBytes(sample(), extended);
        const auto read = winlayer::readDialogTemplate(bytes, 1252);
        ASSERT_TRUE(read.has_value());
        ASSERT_EQ(read->items.size(), 3u);
        EXPECT_EQ(read->font->face, "MS Sans Serif");
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            const std::vector<BYTE> part(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_FALSE(winlayer::readDialogTemplate(part, 1252).has_value()) << size;
        }
    }
}

INT_PTR CALLBACK ignoreAll(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

HWND create(const DialogDescription& description, HWND parent) {
    const auto bytes = dialogBytes(description, true);
    return CreateDialogIndirectParamA(nullptr, asTemplate(bytes), parent, ignoreAll, 0);
}

// The rich-edit class is there exactly while its module is loaded.
TEST(DialogsMachine, RichEditNeedsItsModule) {
    ScopedMachine machine;
    WindowRecorder recorder;
    const HWND frame = recorder.create(WS_POPUP, {0, 0, 400, 300});
    EXPECT_EQ(create(sample(), frame), nullptr);
    EXPECT_EQ(machine->windows.count(), 1u);
    const HMODULE module = LoadLibraryA("RICHED32.DLL");
    ASSERT_NE(module, nullptr);
    const HWND dialog = create(sample(), frame);
    EXPECT_NE(GetDlgItem(dialog, 1029), nullptr);
    ShowWindow(dialog, SW_SHOW);
    pumpMessages();
    DestroyWindow(dialog);
    EXPECT_EQ(machine->windows.contextCount() + machine->graphics.count(), 0u);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_EQ(create(sample(), frame), nullptr);
}

// A screen that has no memory, to place a dialog or to show it.
class FullPeer : public winlayer::Peer {
public:
    explicit FullPeer(bool toPlace) : toPlace_(toPlace) {}
    RECT workArea() const override { return toPlace_ ? throw std::bad_alloc() : Peer::workArea(); }
    void shown(HWND, bool) override { throw std::bad_alloc(); }

private:
    bool toPlace_;
};

TEST(ModalDialogMachine, GivesItsOwnerBackWhenThereIsNoMemory) {
    for (const bool toPlace : {true, false}) {
        ScopedMachine machine;
        WindowRecorder recorder;
        const HWND owner = recorder.create(WS_POPUP | WS_VISIBLE, {0, 0, 400, 300});
        FullPeer peer(toPlace);
        machine->windows.setPeer(&peer);
        const auto bytes = dialogBytes({WS_POPUP | WS_VISIBLE | DS_CENTER, 0, 0, 0, 100, 100, "", {}}, true);
        EXPECT_EQ(DialogBoxIndirectParamA(nullptr, asTemplate(bytes), owner, ignoreAll, 0), -1);
        EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
        EXPECT_TRUE(IsWindowEnabled(owner));
        EXPECT_EQ(machine->windows.count(), 1u);
        machine->windows.setPeer(nullptr);
    }
}

// A dialog of three buttons, 1 to 3.
class ThreeButtons : public testing::Test {
protected:
    ThreeButtons() {
        DialogDescription description{WS_POPUP | WS_VISIBLE, 0, 0, 0, 100, 100, "", {}};
        for (WORD id = 1; id <= 3; ++id) {
            description.controls.push_back(
                {button, "", "", WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, 0, 10, 10, id});
        }
        dialog = create(description, nullptr);
    }
    ~ThreeButtons() override { DestroyWindow(dialog); }

    ScopedMachine machine;
    HWND dialog = nullptr;
};

TEST_F(ThreeButtons, HaveTheFocusBackAfterABox) {
    SetFocus(GetDlgItem(dialog, 2));
    BoxUser user({VK_RETURN});
    machine->windows.setPeer(&user);
    EXPECT_EQ(MessageBoxA(dialog, "Text", "Titel", MB_OK), IDOK);
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog, 2));
    machine->windows.setPeer(nullptr);
}

// With keys that come from the peer.
TEST_F(ThreeButtons, AreWalkedBackwardsWithShiftAndTab) {
    SetFocus(GetDlgItem(dialog, 1));
    winlayer::keyDown(VK_SHIFT);
    winlayer::keyDown(VK_TAB);
    winlayer::keyUp(VK_TAB);
    winlayer::keyUp(VK_SHIFT);
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        EXPECT_TRUE(IsDialogMessageA(dialog, &message));
    }
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), 3);
}

}  // namespace
