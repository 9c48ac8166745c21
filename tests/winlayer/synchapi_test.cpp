#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "support/expect_fails.h"

namespace {

TEST(Event, isSeenOnceOrUntilItIsReset) {
    for (const BOOL manual : {TRUE, FALSE}) {
        const HANDLE event = CreateEventA(nullptr, manual, TRUE, nullptr);
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
            EXPECT_EQ(WaitForSingleObject(event, 1), manual != 0 ? WAIT_OBJECT_0 : DWORD{WAIT_TIMEOUT});
            ResetEvent(event);
            EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT});
            SetEvent(event);
            SetEvent(event);
        }
        ResetEvent(event);
        std::thread signaller([&] {
            Sleep(20);
            SetEvent(event);
        });
        EXPECT_EQ(WaitForSingleObject(event, INFINITE), WAIT_OBJECT_0);
        signaller.join();
        EXPECT_EQ(WaitForSingleObject(event, 0), manual != 0 ? WAIT_OBJECT_0 : DWORD{WAIT_TIMEOUT});
        CloseHandle(event);
    }
}

// How many of three waiting threads one pulse lets go, and that it leaves nothing behind; the rest end by
// setting the event.
TEST(Event, pulseLetsGoThoseThatWait) {
    for (const BOOL manual : {TRUE, FALSE}) {
        const HANDLE event = CreateEventA(nullptr, manual, FALSE, nullptr);
        PulseEvent(event);
        EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT});
        std::atomic<int> released{0};
        std::vector<std::thread> waiting;
        for (int i = 0; i < 3; ++i) {
            waiting.emplace_back([&, limit = i == 0 ? INFINITE : DWORD{5000}] {
                released += WaitForSingleObject(event, limit) == WAIT_OBJECT_0 ? 1 : 0;
            });
        }
        Sleep(100);
        PulseEvent(event);
        Sleep(100);
        EXPECT_EQ(released, manual != 0 ? 3 : 1);
        EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_TIMEOUT});
        while (released < 3) {
            SetEvent(event);
            Sleep(1);
        }
        for (std::thread& thread : waiting) {
            thread.join();
        }
        PulseEvent(event);
        EXPECT_EQ(WaitForSingleObject(event, 1), DWORD{WAIT_TIMEOUT}) << "nobody waits any more";
        CloseHandle(event);
    }
}

TEST(Event, isSharedByItsName) {
    SetLastError(0xBAD);
    const HANDLE first = CreateEventA(nullptr, TRUE, FALSE, "layer test event");
    EXPECT_EQ(GetLastError(), DWORD{NO_ERROR});
    const HANDLE second = CreateEventA(nullptr, FALSE, TRUE, "layer test event");
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    const HANDLE other = CreateEventA(nullptr, TRUE, FALSE, "another test event");
    const HANDLE unnamed = CreateEventA(nullptr, TRUE, FALSE, "");
    EXPECT_EQ(WaitForSingleObject(second, 0), DWORD{WAIT_TIMEOUT}) << "the first one's state counts";
    SetEvent(first);
    EXPECT_EQ(WaitForSingleObject(second, 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(other, 0), DWORD{WAIT_TIMEOUT});
    EXPECT_EQ(WaitForSingleObject(unnamed, 0), DWORD{WAIT_TIMEOUT});
    CloseHandle(first);
    EXPECT_EQ(WaitForSingleObject(second, 0), WAIT_OBJECT_0);
    CloseHandle(second);
    CloseHandle(unnamed);
    CloseHandle(other);
    const HANDLE fresh = CreateEventA(nullptr, TRUE, FALSE, "layer test event");
    EXPECT_EQ(GetLastError(), DWORD{NO_ERROR}) << "the name went with its last handle";
    EXPECT_EQ(WaitForSingleObject(fresh, 0), DWORD{WAIT_TIMEOUT});
    CloseHandle(fresh);
}

TEST(Handle, closedOneIsRefused) {
    const HANDLE event = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    ASSERT_TRUE(CloseHandle(event));
    EXPECT_FAILS(CloseHandle(event), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(SetEvent(event));
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    HANDLE copy = nullptr;
    EXPECT_FAILS(DuplicateHandle(GetCurrentProcess(), event, GetCurrentProcess(), &copy, 0, TRUE,
                                 DUPLICATE_SAME_ACCESS),
                 ERROR_INVALID_HANDLE);
    DWORD count = 0;
    char byte = 0;
    EXPECT_FAILS(ReadFile(nullptr, &byte, 1, &count, nullptr), ERROR_INVALID_HANDLE);
}

TEST(Thread, hasItsOwnLastError) {
    std::atomic<int> turn{0};
    std::thread thread([&] {
        while (turn != 1) {
            Sleep(1);
        }
        SetLastError(2);
        turn = 2;
    });
    SetLastError(1);
    turn = 1;
    while (turn != 2) {
    }
    EXPECT_EQ(GetLastError(), DWORD{1});
    thread.join();
    DWORD other = 0;
    std::thread([&] { other = GetCurrentThreadId(); }).join();
    EXPECT_NE(other, GetCurrentThreadId());
}

}  // namespace
