#pragma once
#include <gtest/gtest.h>

#include "support/window_recorder.h"

// A test with a recording window of its own, whose messages are dispatched before and after.
class FrameTest : public testing::Test {
protected:
    FrameTest(DWORD style, const RECT& place) : frame_(recorder_.create(style, place)) {
        EXPECT_NE(frame_, nullptr);
        pumpMessages();
        recorder_.clear();
    }
    ~FrameTest() override {
        DestroyWindow(frame_);
        pumpMessages();
    }

    WindowRecorder recorder_;
    const HWND frame_;
};
