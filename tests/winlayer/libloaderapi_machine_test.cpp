#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "Include/ansi_literal.h"
#include "support/expect_fails.h"
#include "winlayer/machine.h"

namespace {

using namespace UTILS::literals;

using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

TEST(ModulesMachine, ModulesAreFoundByNameWithoutCaseAndExtension) {
    ScopedMachine machine;
    const HMODULE kernel = GetModuleHandleA("KERNEL32");
    ASSERT_NE(kernel, nullptr);
    EXPECT_EQ(GetModuleHandleA("kernel32.DLL"), kernel);
    EXPECT_NE(GetModuleHandleA(nullptr), kernel);
    EXPECT_FAILS(GetModuleHandleA("missing"), ERROR_MOD_NOT_FOUND);
    const HMODULE added = machine->modules.add("Extra.dll", "D:\\Extra.dll");
    EXPECT_EQ(GetModuleHandleA("extra"), added);
}

TEST(ModulesMachine, LongPathNamesAreOfferedWhereWindowsHasThem) {
    const std::pair<WindowsVersion, bool> cases[] = {{WindowsVersion::Windows95, false},
                                                     {WindowsVersion::Windows98, true},
                                                     {WindowsVersion::NT4, false},
                                                     {WindowsVersion::Windows2000, true}};
    for (const auto& [version, offered] : cases) {
        const ScopedMachine machine(version);
        const FARPROC found = GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetLongPathNameA");
        EXPECT_EQ(found != nullptr, offered);
        using LongPathName = DWORD(WINAPI*)(LPCSTR, LPSTR, DWORD);
        EXPECT_TRUE(!offered ||
                    reinterpret_cast<LongPathName>(reinterpret_cast<void (*)()>(found)) == &GetLongPathNameA);
    }
    ScopedMachine machine;
    machine->modules.removeFunction(GetModuleHandleA("kernel32.dll"), "GetLongPathNameA");
    EXPECT_FAILS(GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetLongPathNameA"), ERROR_PROC_NOT_FOUND);
}

TEST(ModulesMachine, TheProgramKnowsItsPath) {
    ScopedMachine machine;
    char buffer[4096];
    const DWORD length = GetModuleFileNameA(nullptr, buffer, sizeof buffer);
    ASSERT_GT(length, 3u);
    const std::string path(buffer, length);
    EXPECT_EQ(machine->drives.toHost(path), std::filesystem::read_symlink("/proc/self/exe"));

    machine->version = WindowsVersion::XP;
    SetLastError(7);
    EXPECT_EQ(GetModuleFileNameA(nullptr, buffer, length), length);
    EXPECT_EQ(GetLastError(), 7u);
    machine->version = WindowsVersion::Later;
    EXPECT_EQ(GetModuleFileNameA(nullptr, buffer, length), length);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(std::string(buffer), path.substr(0, length - 1));
}

TEST(ModulesMachine, StringsAreEachModulesOwn) {
    ScopedMachine machine;
    machine->modules.addString(nullptr, 7, "Öffnen"_ansi);
    const HMODULE other = machine->modules.add("other.dll", "D:\\other.dll");
    machine->modules.addString(other, 7, "");
    char buffer[16] = "before";
    EXPECT_EQ(LoadStringA(nullptr, 7, buffer, sizeof buffer), 6);
    EXPECT_STREQ(buffer, "Öffnen"_ansi);
    EXPECT_EQ(LoadStringA(GetModuleHandleA(nullptr), 7, buffer, 4), 3);
    EXPECT_EQ(LoadStringA(other, 7, buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
    EXPECT_FAILS(LoadStringA(nullptr, 8000, buffer, sizeof buffer), ERROR_RESOURCE_NAME_NOT_FOUND);
}

}  // namespace
