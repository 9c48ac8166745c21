#include <windows.h>

#include <gtest/gtest.h>

#include "support/frame_test.h"

namespace {

class WindowPlace : public FrameTest {
protected:
    WindowPlace() : FrameTest(WS_POPUP | WS_VISIBLE, {10, 20, 310, 220}) {
        pumpMessages();
        recorder_.clear();
    }

    const HWND child_ = recorder_.create(WS_CHILD | WS_VISIBLE, {5, 6, 45, 26}, frame_, 1);
};

bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

RECT windowRect(HWND window) {
    RECT rectangle{};
    EXPECT_TRUE(GetWindowRect(window, &rectangle));
    return rectangle;
}

TEST_F(WindowPlace, ChildrenLieInTheirParentsClientArea) {
    EXPECT_TRUE((windowRect(child_) == RECT{15, 26, 55, 46}));
    RECT client{};
    EXPECT_TRUE(GetClientRect(child_, &client));
    EXPECT_TRUE((client == RECT{0, 0, 40, 20}));
    POINT point{15, 26};
    EXPECT_TRUE(ScreenToClient(child_, &point));
    EXPECT_EQ(point.x, 0);
    EXPECT_EQ(point.y, 0);
    POINT corners[2] = {{0, 0}, {40, 20}};
    const int moved = MapWindowPoints(child_, frame_, corners, 2);
    EXPECT_EQ(moved, MAKELONG(5, 6));
    EXPECT_EQ(corners[1].x, 45);
    EXPECT_EQ(corners[1].y, 26);
    MapWindowPoints(frame_, nullptr, corners, 1);
    EXPECT_EQ(corners[0].x, 15);
    EXPECT_TRUE(MoveWindow(frame_, 100, 100, 300, 200, FALSE));
    EXPECT_TRUE((windowRect(child_) == RECT{105, 106, 145, 126}));
}

LRESULT CALLBACK limitedProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_GETMINMAXINFO) {
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {200, 150};
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMaxTrackSize = {400, 300};
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

TEST_F(WindowPlace, AWindowThatCanBeSizedKeepsToTheLimitsThatItNames) {
    const auto sized = [](DWORD style, int width, int height) {
        const HWND window = CreateWindowExA(0, "STATIC", "", style, 10, 20, 250, 200, nullptr, nullptr,
                                            GetModuleHandleA(nullptr), nullptr);
        SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(limitedProcedure));
        SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        const RECT place = windowRect(window);
        DestroyWindow(window);
        return std::pair(place.right - place.left, place.bottom - place.top);
    };
    EXPECT_EQ(sized(WS_POPUP | WS_THICKFRAME, 30, 20), std::pair(LONG{200}, LONG{150}));
    EXPECT_EQ(sized(WS_POPUP | WS_THICKFRAME, 900, 160), std::pair(LONG{400}, LONG{160}));
    EXPECT_EQ(sized(WS_POPUP, 30, 20), std::pair(LONG{30}, LONG{20})) << "nobody can size it but its program";
}

TEST_F(WindowPlace, MovingAndSizingTellWhatChanged) {
    const std::vector<UINT> wanted = {WM_SIZE, WM_MOVE, WM_WINDOWPOSCHANGED};
    MoveWindow(child_, 7, 8, 40, 20, TRUE);
    EXPECT_EQ(recorder_.take(wanted, child_), "changed move");
    MoveWindow(child_, 7, 8, 60, 30, TRUE);
    ASSERT_FALSE(recorder_.entries().empty());
    for (const auto& entry : recorder_.entries()) {
        if (entry.message == WM_SIZE) {
            EXPECT_EQ(entry.lParam, MAKELPARAM(60, 30));
            EXPECT_EQ(entry.wParam, WPARAM{SIZE_RESTORED});
        }
    }
    EXPECT_EQ(recorder_.take(wanted, child_), "changed size");
    SetWindowPos(child_, nullptr, 1, 2, 3, 4, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(recorder_.take(wanted, child_), "changed move size");
    SetWindowPos(child_, nullptr, 1, 2, 3, 4, SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(recorder_.take(wanted, child_), "");
    MoveWindow(child_, -4, -5, 3, 4, TRUE);
    EXPECT_EQ(GetParent(child_), frame_);
    EXPECT_TRUE((windowRect(child_) == RECT{6, 15, 9, 19}));
}

TEST_F(WindowPlace, BordersLieAroundTheClientArea) {
    struct Case {
        DWORD style;
        DWORD exStyle;
        LONG width;  // of the border, on each side
    };
    for (const Case& border :
         {Case{WS_BORDER, 0, 1}, Case{0, WS_EX_CLIENTEDGE, 2}, Case{0, WS_EX_STATICEDGE, 1},
          Case{WS_DLGFRAME, 0, 3}, Case{WS_BORDER, WS_EX_CLIENTEDGE, 3}}) {
        SCOPED_TRACE(testing::Message() << std::hex << border.style << ' ' << border.exStyle);
        const HWND window =
            recorder_.create(WS_CHILD | border.style, {0, 0, 80 + 2 * border.width, 40 + 2 * border.width},
                             frame_, 9, border.exStyle);
        RECT client{};
        GetClientRect(window, &client);
        EXPECT_TRUE((client == RECT{0, 0, 80, 40}));
        DestroyWindow(window);
    }
}

TEST_F(WindowPlace, PaintingComesLastAndOnce) {
    recorder_.clear();
    const RECT part{2, 3, 10, 11};
    EXPECT_TRUE(InvalidateRect(child_, &part, FALSE));
    const RECT other{4, 1, 12, 9};
    EXPECT_TRUE(InvalidateRect(child_, &other, FALSE));
    PostMessageA(child_, WM_APP, 0, 0);
    MSG message{};
    ASSERT_TRUE(PeekMessageA(&message, child_, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, UINT{WM_APP});
    ASSERT_TRUE(PeekMessageA(&message, child_, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, UINT{WM_PAINT});
    PAINTSTRUCT paint{};
    BeginPaint(child_, &paint);
    EXPECT_TRUE((paint.rcPaint == RECT{2, 1, 12, 11}));
    EndPaint(child_, &paint);
    EXPECT_FALSE(PeekMessageA(&message, child_, WM_PAINT, WM_PAINT, PM_REMOVE));
}

TEST_F(WindowPlace, TheBackgroundIsErasedWhenAsked) {
    const std::vector<UINT> wanted = {WM_PAINT, WM_ERASEBKGND};
    recorder_.clear();
    InvalidateRect(child_, nullptr, FALSE);
    UpdateWindow(child_);
    EXPECT_EQ(recorder_.take(wanted, child_), "paint");
    InvalidateRect(child_, nullptr, TRUE);
    UpdateWindow(child_);
    EXPECT_EQ(recorder_.take(wanted, child_), "paint erase");
    UpdateWindow(child_);
    EXPECT_EQ(recorder_.take(wanted, child_), "");
}

}  // namespace
