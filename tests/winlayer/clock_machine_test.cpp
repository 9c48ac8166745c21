#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "winlayer/machine.h"

namespace {

using winlayer::ScopedMachine;

LONGLONG counter() {
    LARGE_INTEGER count{};
    EXPECT_TRUE(QueryPerformanceCounter(&count));
    return count.QuadPart;
}

TEST(ClockMachine, AStoppedClockMovesOnlyWhenTold) {
    ScopedMachine machine;
    machine->clock.stop();
    LARGE_INTEGER frequency{};
    ASSERT_TRUE(QueryPerformanceFrequency(&frequency));
    const DWORD ticks = GetTickCount();
    const LONGLONG count = counter();
    EXPECT_EQ(counter(), count);
    const auto hostStart = std::chrono::steady_clock::now();
    Sleep(3'600'000);
    EXPECT_LT(std::chrono::steady_clock::now() - hostStart, std::chrono::minutes(1));
    machine->clock.advance(500'000'000);
    EXPECT_EQ(GetTickCount() - ticks, 3'600'500u);
    EXPECT_EQ(counter() - count, 3'600 * frequency.QuadPart + frequency.QuadPart / 2);
}

TEST(ClockMachine, ARunningClockFollowsTheHosts) {
    const ScopedMachine machine;
    const LONGLONG count = counter();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    LARGE_INTEGER frequency{};
    ASSERT_TRUE(QueryPerformanceFrequency(&frequency));
    EXPECT_GE(counter() - count, frequency.QuadPart / 500);
}

TEST(ClockMachine, AMachineMayLackThePerformanceCounter) {
    ScopedMachine machine;
    machine->clock.hasPerformanceCounter = false;
    LARGE_INTEGER value{};
    EXPECT_FALSE(QueryPerformanceCounter(&value));
    EXPECT_FALSE(QueryPerformanceFrequency(&value));
    EXPECT_EQ(value.QuadPart, 0);
}

}  // namespace
