#include <windows.h>

#include <gtest/gtest.h>

#include "support/expect_fails.h"
#include "winlayer/machine.h"

namespace {

using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

TEST(VersionMachine, TheRecordSizeIsChecked) {
    const ScopedMachine machine(WindowsVersion::Windows98);
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version - 1;
    EXPECT_FAILS(GetVersionExA(&version), ERROR_INSUFFICIENT_BUFFER);
    version.dwOSVersionInfoSize = sizeof version;
    ASSERT_TRUE(GetVersionExA(&version));
    EXPECT_EQ(version.dwMajorVersion, 4u);
    EXPECT_EQ(version.dwMinorVersion, 10u);
    EXPECT_EQ(version.dwBuildNumber, 0x040A07CEu);
    EXPECT_EQ(version.dwPlatformId, VER_PLATFORM_WIN32_WINDOWS);
}

TEST(VersionMachine, TheComputerNameAndItsZeroMustFit) {
    ScopedMachine machine;
    machine->computerName = "DESK";
    char name[16];
    DWORD size = 4;
    EXPECT_FAILS(GetComputerNameA(name, &size), ERROR_BUFFER_OVERFLOW);
    EXPECT_EQ(size, 5u);
    ASSERT_TRUE(GetComputerNameA(name, &size));
    EXPECT_STREQ(name, "DESK");
    EXPECT_EQ(size, 4u);

    machine->version = WindowsVersion::Windows98;  // wants room for the longest name
    size = 15;
    EXPECT_FALSE(GetComputerNameA(name, &size));
    EXPECT_EQ(size, 16u);
    EXPECT_TRUE(GetComputerNameA(name, &size));
}

}  // namespace
