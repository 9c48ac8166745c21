#include <windows.h>

#include <gtest/gtest.h>

#include "support/expect_fails.h"
#include "support/frame_test.h"

namespace {

class Messages : public FrameTest {
protected:
    Messages() : FrameTest(WS_POPUP, {0, 0, 100, 100}) { pumpMessages(); }
    ~Messages() override { DestroyWindow(other_); }

    static UINT next(HWND window) {
        MSG message{};
        return PeekMessageA(&message, window, 0, 0, PM_REMOVE) ? message.message : 0;
    }

    const HWND child_ = recorder_.create(WS_CHILD, {0, 0, 50, 50}, frame_, 1);
    const HWND other_ = recorder_.create(WS_POPUP, {0, 0, 100, 100});
};

TEST_F(Messages, AWindowFilterTakesItsChildrenIn) {
    PostMessageA(other_, WM_APP + 1, 0, 0);
    PostMessageA(child_, WM_APP + 2, 0, 0);
    PostMessageA(frame_, WM_APP + 3, 0, 0);
    PostThreadMessageA(GetCurrentThreadId(), WM_APP + 4, 0, 0);
    EXPECT_EQ(next(frame_), UINT{WM_APP + 2});
    EXPECT_EQ(next(frame_), UINT{WM_APP + 3});
    EXPECT_EQ(next(frame_), 0u);
    EXPECT_EQ(next(reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1))), UINT{WM_APP + 4});
    EXPECT_EQ(next(nullptr), UINT{WM_APP + 1});
}

TEST_F(Messages, QuittingComesAfterWhatWasPosted) {
    PostQuitMessage(42);
    PostMessageA(frame_, WM_APP, 0, 0);
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, UINT{WM_APP});
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, UINT{WM_QUIT});
    EXPECT_EQ(message.wParam, WPARAM{42});
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
}

TEST_F(Messages, WhatWasPostedGoesWithItsWindow) {
    PostMessageA(child_, WM_APP, 0, 0);
    DestroyWindow(child_);
    EXPECT_EQ(next(nullptr), 0u);
    SetLastError(0);
    EXPECT_FAILS(PostMessageA(child_, WM_APP, 0, 0), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_EQ(SendMessageA(child_, WM_APP, 0, 0), 0);
}

}  // namespace
