#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "winlayer/machine.h"

namespace {

using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

HKEY create(HKEY parent, const char* path) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExA(parent, path, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    return key;
}

LONG open(HKEY parent, const std::string& path, HKEY& key, REGSAM access = KEY_READ) {
    return RegOpenKeyExA(parent, path.c_str(), 0, access, &key);
}

TEST(WinRegMachine, OnlyTheNtFamilyRefusesToDeleteAKeyWithSubkeys) {
    for (const WindowsVersion version :
         {WindowsVersion::Windows95, WindowsVersion::Windows98, WindowsVersion::WindowsMe,
          WindowsVersion::NT351, WindowsVersion::NT4, WindowsVersion::Windows2000, WindowsVersion::XP}) {
        ScopedMachine machine(version);
        const HKEY below = create(HKEY_LOCAL_MACHINE, "Software\\A\\B\\C");
        const bool nt = winlayer::isNt(version);
        EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\A"), nt ? LONG{ERROR_ACCESS_DENIED} : 0);
        DWORD size = 0;
        EXPECT_EQ(RegQueryValueExA(below, "V", nullptr, nullptr, nullptr, &size),
                  nt ? LONG{ERROR_FILE_NOT_FOUND} : LONG{ERROR_KEY_DELETED});
        EXPECT_EQ(RegCloseKey(below), ERROR_SUCCESS);
        EXPECT_EQ(machine->handles.openCount(), 0u);
    }
}

TEST(WinRegMachine, TheHandleTableKnowsEveryOpenKey) {
    ScopedMachine machine;
    const HKEY key = create(HKEY_CURRENT_USER, "K");
    HKEY same = nullptr;
    ASSERT_EQ(open(HKEY_CURRENT_USER, "", same), ERROR_SUCCESS);
    EXPECT_EQ(same, HKEY_CURRENT_USER);
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
    EXPECT_EQ(machine->handles.openCount(), 1u);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), LONG{ERROR_INVALID_HANDLE});
    EXPECT_EQ(RegDeleteValueA(key, "V"), LONG{ERROR_INVALID_HANDLE});
    EXPECT_EQ(machine->handles.openCount(), 0u);

    machine->gate.failFunction("RegCloseKey", ERROR_GEN_FAILURE);
    const HKEY other = create(HKEY_CURRENT_USER, "K");
    EXPECT_EQ(RegCloseKey(other), LONG{ERROR_GEN_FAILURE});
    EXPECT_EQ(machine->handles.openCount(), 0u);
}

TEST(WinRegMachine, RootsAreSeparateAndCannotBeDeleted) {
    const ScopedMachine machine;
    RegCloseKey(create(HKEY_USERS, "K"));
    HKEY key = nullptr;
    EXPECT_EQ(open(HKEY_CLASSES_ROOT, "K", key), LONG{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(RegDeleteKeyA(HKEY_CLASSES_ROOT, ""), LONG{ERROR_ACCESS_DENIED});
    EXPECT_EQ(open(reinterpret_cast<HKEY>(std::uintptr_t{0x80000004}), "K", key), LONG{ERROR_INVALID_HANDLE});
}

TEST(WinRegMachine, NamesMatchWithoutCaseInTheWholeCodePage) {
    const ScopedMachine machine;
    const HKEY key = create(HKEY_CURRENT_USER, "\xC4pfel");  // Ä in code page 1252
    HKEY again = nullptr;
    EXPECT_EQ(open(HKEY_CURRENT_USER, "\xE4PFEL", again), ERROR_SUCCESS);
    RegCloseKey(again);
    RegCloseKey(key);
}

TEST(WinRegMachine, OnlyTheNtFamilyHoldsAHandleToWhatItWasOpenedFor) {
    for (const WindowsVersion version : {WindowsVersion::Windows98, WindowsVersion::XP}) {
        const ScopedMachine machine(version);
        const LONG refusal = winlayer::isNt(version) ? LONG{ERROR_ACCESS_DENIED} : ERROR_SUCCESS;
        RegCloseKey(create(HKEY_CURRENT_USER, "K"));
        HKEY reader = nullptr;
        HKEY writer = nullptr;
        ASSERT_EQ(open(HKEY_CURRENT_USER, "K", reader), ERROR_SUCCESS);
        ASSERT_EQ(open(HKEY_CURRENT_USER, "K", writer, KEY_WRITE), ERROR_SUCCESS);
        const BYTE data = 1;
        DWORD size = 1;
        EXPECT_EQ(RegSetValueExA(reader, "V", 0, REG_BINARY, &data, 1), refusal);
        EXPECT_EQ(RegSetValueExA(writer, "V", 0, REG_BINARY, &data, 1), ERROR_SUCCESS);
        EXPECT_EQ(RegQueryValueExA(writer, "V", nullptr, nullptr, nullptr, &size), refusal);
        EXPECT_EQ(RegQueryValueExA(reader, "V", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
        RegCloseKey(reader);
        RegCloseKey(writer);
    }
}

TEST(WinRegMachine, KeyNamesHaveALimitAndPathsAForm) {
    const ScopedMachine machine;
    RegCloseKey(create(HKEY_CURRENT_USER, std::string(255, 'k').c_str()));
    HKEY key = nullptr;
    EXPECT_EQ(open(HKEY_CURRENT_USER, std::string(256, 'k'), key), LONG{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(open(HKEY_CURRENT_USER, "\\" + std::string(255, 'k'), key), LONG{ERROR_BAD_PATHNAME});
    ASSERT_EQ(open(HKEY_CURRENT_USER, std::string(255, 'k') + "\\", key), ERROR_SUCCESS);
    RegCloseKey(key);
    char name[256];
    DWORD size = sizeof name;
    EXPECT_EQ(RegEnumKeyExA(HKEY_CURRENT_USER, 0, name, &size, nullptr, nullptr, nullptr, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(size, 255u);
}

// The last error is not the registry's to touch: its functions return their code.
TEST(WinRegMachine, PlannedFailuresComeBackAsResults) {
    ScopedMachine machine;
    SetLastError(7);
    machine->gate.failCall(0, ERROR_NOT_ENOUGH_MEMORY);
    HKEY key = nullptr;
    EXPECT_EQ(open(HKEY_CURRENT_USER, "", key), LONG{ERROR_NOT_ENOUGH_MEMORY});
    EXPECT_EQ(GetLastError(), 7u);
    EXPECT_EQ(key, nullptr);
}

}  // namespace
