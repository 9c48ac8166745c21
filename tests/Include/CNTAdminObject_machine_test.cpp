#include "Include/CNTAdminObject.h"

#include <gtest/gtest.h>

#include "winlayer/machine.h"

namespace {

using winlayer::Machine;
using winlayer::ScopedMachine;
using winlayer::TokenGroups;
using winlayer::WindowsVersion;

struct VersionCase {
    WindowsVersion version;
    ostype system;
    int isNt;
};

TEST(CNTAdminObjectMachine, TellsTheSystemByItsVersion) {
    const VersionCase cases[] = {
        {WindowsVersion::Windows95, OS_WINDOWS_95, 0}, {WindowsVersion::Windows98, OS_WINDOWS_98, 0},
        {WindowsVersion::WindowsMe, OS_WINDOWS_ME, 0}, {WindowsVersion::NT351, OS_WINDOWS_NT3, 1},
        {WindowsVersion::NT4, OS_WINDOWS_NT4, 1},      {WindowsVersion::Windows2000, OS_WINDOWS_2000, 1},
        {WindowsVersion::XP, OS_WINDOWS_XP, 1},        {WindowsVersion::Later, OS_UNKNOWN, 0},
    };
    for (const VersionCase& expected : cases) {
        const ScopedMachine machine(expected.version);
        CNTAdminObject admin;
        EXPECT_EQ(admin.GetOS(), expected.system);
        EXPECT_EQ(admin.IsNT(), expected.isNt) << "system " << expected.system;
        EXPECT_EQ(admin.RunningAsAdministrator(), expected.isNt) << "system " << expected.system;
        EXPECT_EQ(CNTAdminObject(admin).GetOS(), expected.system);
    }
}

TEST(CNTAdminObjectMachine, JudgesTheProcessByItsGroups) {
    ScopedMachine machine;
    CNTAdminObject admin;
    EXPECT_EQ(admin.IsAdmin(), 1);
    machine->security.process = TokenGroups::users();
    EXPECT_EQ(admin.IsAdmin(), 0);
    machine->security.process = TokenGroups{};
    EXPECT_EQ(admin.IsAdmin(), 0);
    EXPECT_EQ(machine->handles.openCount(), 0u);
    EXPECT_EQ(machine->localMemory.blockCount(), 0u);
}

TEST(CNTAdminObjectMachine, AnImpersonatingThreadCountsInsteadOfTheProcess) {
    ScopedMachine machine;
    CNTAdminObject admin;
    machine->security.thread = TokenGroups::users();
    EXPECT_EQ(admin.RunningAsAdministrator(), 0);
    machine->security.process = TokenGroups::users();
    machine->security.thread = TokenGroups::administrators();
    EXPECT_EQ(admin.RunningAsAdministrator(), 1);
}

// Only the missing thread token leads on to the process's; any other failure is a plain no, and nothing is
// left open or allocated. The administrators are the last of four groups, so a failed comparison of another
// group decides nothing, and neither does closing the token.
TEST(CNTAdminObjectMachine, AnyFailingCallGivesNoAndLeavesNothingBehind) {
    const std::vector<int> expected = {
        0,           // OpenThreadToken
        0,           // OpenProcessToken
        0, 0,        // GetTokenInformation
        0,           // AllocateAndInitializeSid
        1, 1, 1, 0,  // EqualSid
        1,           // CloseHandle
    };
    ScopedMachine machine;
    CNTAdminObject admin;
    machine->gate.startRecording();
    ASSERT_EQ(admin.RunningAsAdministrator(), 1);
    ASSERT_EQ(machine->gate.fallibleCalls(), expected.size());
    for (std::size_t k = 0; k < expected.size(); ++k) {
        machine->gate.reset();
        machine->gate.failCall(k, ERROR_ACCESS_DENIED);
        EXPECT_EQ(admin.RunningAsAdministrator(), expected[k]) << "call " << k;
        EXPECT_EQ(machine->gate.failedCalls(), 1u);
        EXPECT_EQ(machine->handles.openCount(), 0u) << "call " << k;
        EXPECT_EQ(machine->localMemory.blockCount(), 0u) << "call " << k;
    }
}

TEST(CNTAdminObjectMachine, AFailedVersionQueryLeavesTheSystemUnknown) {
    ScopedMachine machine;
    machine->gate.failFunction("GetVersionExA", ERROR_GEN_FAILURE);
    CNTAdminObject admin;
    EXPECT_EQ(admin.GetOS(), OS_UNKNOWN);
    EXPECT_EQ(admin.RunningAsAdministrator(), 0);
}

}  // namespace
