#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "winlayer/machine.h"

namespace {

using winlayer::ScopedMachine;

TEST(LocalesMachine, TheUsersIsTheMachines) {
    ScopedMachine machine;
    const SYSTEMTIME time = {2003, 3, 3, 5, 15, 7, 2, 0};
    char text[32];
    machine->language = 0x0409;
    EXPECT_GT(GetNumberFormatA(LOCALE_SYSTEM_DEFAULT, 0, "-1234567.5", nullptr, text, sizeof text), 0);
    EXPECT_STREQ(text, "-1,234,567.50");

    // A digit that rounding adds is grouped like any other, and no buffer asks for the length.
    EXPECT_EQ(GetNumberFormatA(LOCALE_USER_DEFAULT, 0, "-999.995", nullptr, nullptr, 0), 10);
    EXPECT_EQ(GetNumberFormatA(LOCALE_USER_DEFAULT, 0, "-999.995", nullptr, text, 10), 10);
    EXPECT_STREQ(text, "-1,000.00");

    machine->language = 0x0407;
    machine->ansiCodePage = CP_UTF8;
    EXPECT_GT(GetDateFormatA(LOCALE_USER_DEFAULT, 0, &time, "MMMM", text, sizeof text), 0);
    EXPECT_STREQ(text, "März");
}

TEST(LocalesMachine, WithoutATimeItIsThePresent) {
    const ScopedMachine machine;
    char text[32];
    ASSERT_EQ(GetDateFormatA(LOCALE_USER_DEFAULT, 0, nullptr, "yyyyMMdd", text, sizeof text), 9);
    EXPECT_GT(std::string(text), "20240101");
    EXPECT_EQ(GetTimeFormatA(LOCALE_USER_DEFAULT, 0, nullptr, nullptr, text, sizeof text), 9);
}

}  // namespace
