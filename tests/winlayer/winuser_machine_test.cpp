#include <windows.h>

#include <gtest/gtest.h>

#include <thread>

#include "winlayer/machine.h"

namespace {

using winlayer::ScopedMachine;

UINT nextMessage(UINT first = 0, UINT last = 0, UINT flags = PM_REMOVE) {
    MSG message{};
    return PeekMessageA(&message, nullptr, first, last, flags) ? message.message : 0;
}

TEST(WinUserMachine, MessagesComeInOrderAndByRange) {
    const ScopedMachine machine;
    for (const UINT message : {10u, 20u, 30u, 21u}) {
        ASSERT_TRUE(PostThreadMessageA(GetCurrentThreadId(), message, message + 1, 2));
    }
    EXPECT_EQ(nextMessage(20, 29, PM_NOREMOVE), 20u);
    EXPECT_EQ(nextMessage(20, 29), 20u);
    EXPECT_EQ(nextMessage(20, 29), 21u);
    EXPECT_EQ(nextMessage(20, 29), 0u);
    MSG message{};
    ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, 10u);
    EXPECT_EQ(message.wParam, 11u);
    EXPECT_EQ(nextMessage(), 30u);
    EXPECT_EQ(nextMessage(), 0u);
}

// Work sent to a thread may look at the queue and send more work itself.
TEST(WinUserMachine, SentWorkRunsWhenTheThreadLooksAtItsQueue) {
    ScopedMachine machine;
    std::string done;
    machine->messages.send(GetCurrentThreadId(), [&] {
        done += 'a';
        machine->messages.send(GetCurrentThreadId(), [&] { done += 'b'; });
        EXPECT_EQ(nextMessage(5, 5), 0u);
        PostThreadMessageA(GetCurrentThreadId(), 9, 0, 0);
    });
    EXPECT_EQ(done, "");
    EXPECT_EQ(nextMessage(), 9u);
    EXPECT_EQ(done, "ab");
}

TEST(WinUserMachine, TheProgramsOwnWorkRunsAtEveryLook) {
    ScopedMachine machine;
    int looks = 0;
    machine->messages.atEveryLook([&] {
        if (++looks == 1) PostThreadMessageA(GetCurrentThreadId(), 7, 0, 0);
    });
    EXPECT_EQ(nextMessage(), 7u);
    EXPECT_EQ(nextMessage(), 0u);
    EXPECT_EQ(looks, 2);
    machine->messages.atEveryLook({});
    EXPECT_EQ(nextMessage(), 0u);
    EXPECT_EQ(looks, 2);
}

TEST(WinUserMachine, AThreadWithoutAQueueCannotBePostedTo) {
    const ScopedMachine machine;
    const DWORD self = GetCurrentThreadId();
    BOOL early = TRUE;
    DWORD earlyError = 0;
    std::thread([&] {
        early = PostThreadMessageA(self, 1, 0, 0);
        earlyError = GetLastError();
    }).join();
    EXPECT_FALSE(early);
    EXPECT_EQ(earlyError, ERROR_INVALID_THREAD_ID);
    EXPECT_EQ(nextMessage(), 0u);
    std::thread([&] { EXPECT_TRUE(PostThreadMessageA(self, 2, 0, 0)); }).join();
    EXPECT_EQ(nextMessage(), 2u);
}

}  // namespace
