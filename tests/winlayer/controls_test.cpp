#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include "support/frame_test.h"

namespace {

class Controls : public FrameTest {
protected:
    Controls() : FrameTest(WS_POPUP | WS_VISIBLE, {0, 0, 300, 200}) { InitCommonControls(); }

    HWND make(const char* className, DWORD style, const char* text = "") {
        return CreateWindowExA(0, className, text, style | WS_CHILD | WS_VISIBLE, 10, 10, 60, 20, frame_,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(40)), nullptr, nullptr);
    }
};

TEST_F(Controls, AProgressBarKeepsWithinItsRange) {
    const HWND bar = make(PROGRESS_CLASSA, 0);
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(SendMessageA(bar, PBM_SETRANGE, 0, MAKELPARAM(0, 200)), MAKELONG(0, 100));
    EXPECT_EQ(SendMessageA(bar, PBM_GETRANGE, FALSE, 0), 200);
    EXPECT_EQ(SendMessageA(bar, PBM_SETPOS, 150, 0), 0);
    EXPECT_EQ(SendMessageA(bar, PBM_DELTAPOS, 20, 0), 150);
    EXPECT_EQ(SendMessageA(bar, PBM_GETPOS, 0, 0), 170);
    SendMessageA(bar, PBM_SETPOS, 1000, 0);
    EXPECT_EQ(SendMessageA(bar, PBM_GETPOS, 0, 0), 200);
    SendMessageA(bar, PBM_SETPOS, 5, 0);
    SendMessageA(bar, PBM_SETSTEP, 30, 0);
    SendMessageA(bar, PBM_STEPIT, 0, 0);
    EXPECT_EQ(SendMessageA(bar, PBM_GETPOS, 0, 0), 35);
}

TEST_F(Controls, AStaticTextKeepsFontAndTextAndTakesNoFocus) {
    const HWND text = make("STATIC", SS_SUNKEN, "Hinweis");
    EXPECT_NE(SendMessageA(text, WM_GETDLGCODE, 0, 0) & DLGC_STATIC, 0);
    SetWindowTextA(text, "Diskette\n\nBitte");
    char buffer[40];
    GetWindowTextA(text, buffer, sizeof buffer);
    EXPECT_STREQ(buffer, "Diskette\n\nBitte");
    RECT client{};
    GetClientRect(text, &client);
    EXPECT_EQ(client.right, 58);  // the sunken edge takes one pixel on each side
}

TEST_F(Controls, AClickIsMadeOfPressAndReleaseInside) {
    const HWND push = make("BUTTON", BS_PUSHBUTTON, "Weiter");
    const auto isPushed = [&] { return (SendMessageA(push, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0; };
    const auto press = [&] {
        recorder_.clear();
        SendMessageA(push, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        EXPECT_TRUE(isPushed());
        EXPECT_EQ(recorder_.take({WM_COMMAND}), "");
    };
    const auto release = [&](int x) {
        SendMessageA(push, WM_LBUTTONUP, 0, MAKELPARAM(x, 5));
        return recorder_.take({WM_COMMAND});
    };
    press();
    EXPECT_EQ(release(5), "command");
    press();
    SendMessageA(push, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(-5, 5));
    EXPECT_FALSE(isPushed());
    EXPECT_EQ(release(-5), "");
    press();
    SetFocus(frame_);
    EXPECT_EQ(release(5), "") << "an ended focus ends the press";
    SetFocus(push);
    recorder_.clear();
    SendMessageA(push, WM_KEYDOWN, VK_SPACE, 0);
    EXPECT_EQ(recorder_.take({WM_COMMAND}), "");
    SendMessageA(push, WM_KEYUP, VK_SPACE, 0);
    EXPECT_EQ(recorder_.take({WM_COMMAND}), "command");
}

}  // namespace
