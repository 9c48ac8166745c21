#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <vector>

#include "support/expect_fails.h"
#include "winlayer/machine.h"

namespace {

using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

PSID administrators() {
    SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
    PSID sid = nullptr;
    EXPECT_TRUE(AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS,
                                         0, 0, 0, 0, 0, 0, &sid));
    return sid;
}

TEST(SecurityMachine, IdentifiersHaveTheBinaryForm) {
    ScopedMachine machine;
    const PSID sid = administrators();
    std::array<BYTE, 16> other = {1, 2, 0, 0, 0, 0, 0, 5, 0x20, 0, 0, 0, 0x20, 2, 0, 0};
    EXPECT_EQ(std::memcmp(sid, other.data(), other.size()), 0);
    EXPECT_TRUE(EqualSid(sid, other.data()));
    other[15] = 1;
    EXPECT_FALSE(EqualSid(sid, other.data()));
    other[15] = 0;
    other[1] = 1;
    EXPECT_FALSE(EqualSid(sid, other.data())) << "a prefix is another identifier";
    EXPECT_EQ(machine->localMemory.blockCount(), 1u);
    EXPECT_EQ(FreeSid(sid), nullptr);
    EXPECT_EQ(FreeSid(sid), sid);
    EXPECT_EQ(machine->localMemory.blockCount(), 0u);
}

TEST(SecurityMachine, ATokenListsItsGroups) {
    ScopedMachine machine;
    HANDLE token = nullptr;
    EXPECT_FAILS(OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token), ERROR_NO_TOKEN);
    ASSERT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token));
    DWORD needed = 0;
    EXPECT_FAILS(GetTokenInformation(token, TokenGroups, nullptr, 0, &needed), ERROR_INSUFFICIENT_BUFFER);
    std::vector<TOKEN_GROUPS> list(needed / sizeof(TOKEN_GROUPS) + 1);
    EXPECT_FALSE(GetTokenInformation(token, TokenGroups, list.data(), needed - 1, &needed));
    ASSERT_TRUE(GetTokenInformation(token, TokenGroups, list.data(), needed, &needed));
    ASSERT_EQ(list[0].GroupCount, 4u);
    const PSID sid = administrators();
    const SID_AND_ATTRIBUTES* group = list[0].Groups;
    EXPECT_FALSE(EqualSid(group[0].Sid, sid));
    EXPECT_TRUE(EqualSid(group[3].Sid, sid));
    FreeSid(sid);
    EXPECT_TRUE(CloseHandle(token));
    EXPECT_FAILS(GetTokenInformation(token, TokenGroups, list.data(), needed, &needed), ERROR_INVALID_HANDLE);
    EXPECT_EQ(machine->handles.openCount(), 0u);
}

TEST(SecurityMachine, ATokenMustBeOpenedForQueries) {
    ScopedMachine machine;
    HANDLE token = nullptr;
    ASSERT_TRUE(OpenProcessToken(GetCurrentProcess(), 0, &token));
    DWORD needed = 0;
    EXPECT_FAILS(GetTokenInformation(token, TokenGroups, nullptr, 0, &needed), ERROR_ACCESS_DENIED);
    CloseHandle(token);
    EXPECT_FAILS(OpenProcessToken(GetCurrentThread(), TOKEN_QUERY, &token), ERROR_INVALID_HANDLE);
    machine->version = WindowsVersion::Windows98;  // has no security
    EXPECT_FAILS(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token), ERROR_CALL_NOT_IMPLEMENTED);
}

}  // namespace
