// On which Windows the programs start themselves again.
#include "newwindows/known_version.h"

#include <gtest/gtest.h>

namespace {

bool known(DWORD platform, DWORD major, DWORD minor) {
    OSVERSIONINFOA version{};
    version.dwPlatformId = platform;
    version.dwMajorVersion = major;
    version.dwMinorVersion = minor;
    return newwindows::isKnown(version);
}

TEST(WindowsVersion, IsKnownUpToXp) {
    EXPECT_TRUE(known(VER_PLATFORM_WIN32_WINDOWS, 4, 0));
    EXPECT_TRUE(known(VER_PLATFORM_WIN32_WINDOWS, 4, 10));
    EXPECT_TRUE(known(VER_PLATFORM_WIN32_WINDOWS, 4, 90));
    EXPECT_TRUE(known(VER_PLATFORM_WIN32_WINDOWS, 4, 3))
        << "a later edition of Windows 95, which it is taken for";
    EXPECT_TRUE(known(VER_PLATFORM_WIN32_NT, 3, 51));
    EXPECT_TRUE(known(VER_PLATFORM_WIN32_NT, 4, 0));
    EXPECT_TRUE(known(VER_PLATFORM_WIN32_NT, 5, 0));
    EXPECT_TRUE(known(VER_PLATFORM_WIN32_NT, 5, 1));
    EXPECT_FALSE(known(VER_PLATFORM_WIN32_NT, 5, 2)) << "Server 2003";
    EXPECT_FALSE(known(VER_PLATFORM_WIN32_NT, 6, 1)) << "Windows 7";
    EXPECT_FALSE(known(VER_PLATFORM_WIN32_NT, 10, 0));
    EXPECT_FALSE(known(0, 3, 10)) << "Win32s";
}

}  // namespace
