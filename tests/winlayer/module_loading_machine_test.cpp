#include <windows.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Include/ansi_literal.h"
#include "support/expect_fails.h"
#include "support/host_directory_machine.h"
#include "winlayer/machine.h"
#include "winlayer/modules/journal.h"

namespace {

using namespace UTILS::literals;

using namespace winlayer;
namespace fs = std::filesystem;

const fs::path built = BUILD_DIRECTORY "/tests/modules";

using Messages = std::vector<UINT>;

// What the modules told: the messages, and with them the handles and values.
struct Journal {
    Messages messages;
    std::vector<MSG> entries;
};

Journal takeJournal() {
    Journal journal;
    for (MSG message; PeekMessageA(&message, nullptr, entryCalled, entryCalled + 0x3FF, PM_REMOVE) != 0;) {
        journal.messages.push_back(message.message);
        journal.entries.push_back(message);
    }
    return journal;
}

template <class Function>
Function* functionIn(HMODULE module, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

std::string pathOf(HMODULE module) {
    char path[1024];
    return {path, GetModuleFileNameA(module, path, sizeof path)};
}

bool isMapped(const fs::path& file) {
    void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        ::dlclose(handle);
    }
    return handle != nullptr;
}

const Messages userLoads = {objectBegins, entryCalled + baseModule + DLL_PROCESS_ATTACH,
                            entryCalled + DLL_PROCESS_ATTACH};
const Messages userUnloads = {entryCalled + DLL_PROCESS_DETACH, objectEnds,
                              entryCalled + baseModule + DLL_PROCESS_DETACH};

// A machine with the built modules in its current directory, C:\suite.
class ModuleLoading : public testing::Test {
protected:
    void SetUp() override {
        machine->drives.mountFolder('D', built);
        ASSERT_EQ(machine->drives.setCurrentDirectory("D:\\"), 0u);
    }

    ScopedMachine machine;
};

TEST_F(ModuleLoading, AModuleLivesFromTheFirstLoadToTheLastFree) {
    const HMODULE module = LoadLibraryA("USER");
    ASSERT_NE(module, nullptr) << GetLastError();
    const Journal loading = takeJournal();
    EXPECT_EQ(loading.messages, userLoads);
    EXPECT_EQ(pathOf(module), "D:\\user.dll");
    for (const MSG& message : {loading.entries.front(), loading.entries.back()}) {
        EXPECT_EQ(reinterpret_cast<HMODULE>(message.wParam), module);
    }
    EXPECT_EQ(loading.entries.front().lParam, 11) << "static objects see their module's path";
    EXPECT_EQ(loading.entries.back().lParam, 0);

    EXPECT_EQ(LoadLibraryA("d:\\User.DLL"), module);
    EXPECT_EQ(LoadLibraryA("user.dll"), module);
    EXPECT_EQ(GetModuleHandleA("user"), module);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(takeJournal().messages.empty());

    EXPECT_TRUE(FreeLibrary(module));
    const Journal unloading = takeJournal();
    EXPECT_EQ(unloading.messages, userUnloads);
    EXPECT_EQ(unloading.entries[0].lParam, 0) << "the process does not end";
    EXPECT_EQ(unloading.entries[1].lParam, 11);
    EXPECT_FALSE(isMapped(built / "user.dll"));
    EXPECT_FALSE(isMapped(built / "base.dll"));

    EXPECT_FAILS(FreeLibrary(module), ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(GetModuleHandleA("user"), nullptr);
    EXPECT_EQ(GetProcAddress(module, "fourTimes"), nullptr);
    EXPECT_EQ(pathOf(module), "");
    EXPECT_NE(LoadLibraryA("user.dll"), module) << "a handle is not given twice";
}

TEST_F(ModuleLoading, FunctionsAndResourcesAreTheModulesOwn) {
    const HMODULE module = LoadLibraryA("user.dll");
    ASSERT_NE(module, nullptr);
    int count = 0;
    ASSERT_NE(GetProcAddress(module, "fourTimes"), nullptr);
    EXPECT_EQ(functionIn<int(int, int*)>(module, "fourTimes")(5, &count), 20);
    EXPECT_EQ(count, 1);
    for (const char* const name : {"twice", "malloc", "PostThreadMessageA", "FourTimes"}) {
        EXPECT_FAILS(GetProcAddress(module, name), ERROR_PROC_NOT_FOUND) << name;
    }
    EXPECT_EQ(GetProcAddress(module, MAKEINTRESOURCEA(1)), nullptr);

    char text[64];
    EXPECT_EQ(LoadStringA(module, 5, text, sizeof text), 29);
    EXPECT_STREQ(text, "Text des Moduls für Prüfungen"_ansi);
    EXPECT_EQ(machine->modules.resource(module, ResourceId(RT_STRING), {WORD{1}}).size() % 2, 0u);

    const HMODULE needed = GetModuleHandleA("base.dll");
    ASSERT_NE(needed, nullptr) << "what a module needs is loaded with it";
    EXPECT_EQ(functionIn<int(int)>(needed, "twice")(4), 8);
    EXPECT_EQ(machine->modules.holding(reinterpret_cast<const void*>(GetProcAddress(needed, "twice"))),
              needed);
}

TEST_F(ModuleLoading, AModuleThatIsNeededLastsAsLongAsWhoNeedsIt) {
    const HMODULE base = LoadLibraryA("base.dll");
    ASSERT_NE(base, nullptr);
    const HMODULE user = LoadLibraryA("user.dll");
    ASSERT_NE(user, nullptr);
    EXPECT_EQ(takeJournal().messages, (Messages{entryCalled + baseModule + DLL_PROCESS_ATTACH, objectBegins,
                                                entryCalled + DLL_PROCESS_ATTACH}));
    EXPECT_TRUE(FreeLibrary(base));
    EXPECT_TRUE(takeJournal().messages.empty());
    EXPECT_TRUE(FreeLibrary(user));
    EXPECT_EQ(takeJournal().messages, userUnloads);
}

TEST_F(ModuleLoading, AnEntryPointThatRefusesEndsTheLoad) {
    EXPECT_FAILS(LoadLibraryA("refuser"), ERROR_DLL_INIT_FAILED);
    EXPECT_EQ(takeJournal().messages, (Messages{entryCalled + refuserModule + DLL_PROCESS_ATTACH,
                                                entryCalled + refuserModule + DLL_PROCESS_DETACH}));
    EXPECT_FALSE(isMapped(built / "refuser.dll"));
    EXPECT_EQ(GetModuleHandleA("refuser"), nullptr);
}

TEST_F(ModuleLoading, WhatIsNoModuleIsRefused) {
    const HostDirectory folder;
    std::ofstream(folder / "text.dll") << "no module at all";
    std::ofstream(folder / "empty.dll");
    fs::copy_file(built / "plain.dll", folder / "cut.dll", fs::copy_options::overwrite_existing);
    fs::resize_file(folder / "cut.dll", 40);
    fs::create_directories(folder / "folder.dll");
    machine->drives.mountFolder('E', folder.path());
    const std::pair<const char*, DWORD> cases[] = {
        {"E:\\text.dll", ERROR_BAD_EXE_FORMAT}, {"E:\\empty.dll", ERROR_BAD_EXE_FORMAT},
        {"E:\\cut.dll", ERROR_BAD_EXE_FORMAT},  {"E:\\folder.dll", ERROR_MOD_NOT_FOUND},
        {"E:\\missing", ERROR_MOD_NOT_FOUND},   {"missing.dll", ERROR_MOD_NOT_FOUND},
        {"X:\\user.dll", ERROR_MOD_NOT_FOUND},  {"", ERROR_MOD_NOT_FOUND}};
    for (const auto& [name, error] : cases) {
        SetLastError(0);
        EXPECT_FAILS(LoadLibraryA(name), error) << name;
    }
    EXPECT_EQ(LoadLibraryA(nullptr), nullptr);
    EXPECT_FALSE(FreeLibrary(nullptr));
}

TEST_F(ModuleLoading, FoldersAreSearchedInWindowsOrder) {
    const fs::path system = machine->drives.toHost(machine->systemDirectory());
    const fs::path windows = machine->drives.toHost(machine->windowsDirectory());
    fs::copy_file(built / "plain.dll", windows / "plain.dll");
    ASSERT_EQ(machine->drives.setCurrentDirectory("C:\\"), 0u);
    const auto foundAt = [] {
        const HMODULE module = LoadLibraryA("plain.dll");  // without an entry point
        const std::string path = pathOf(module);
        EXPECT_EQ(functionIn<int()>(module, "answer")(), 42);
        EXPECT_TRUE(FreeLibrary(module));
        return path;
    };
    EXPECT_EQ(foundAt(), "C:\\WINDOWS\\plain.dll");
    fs::copy_file(built / "plain.dll", system / "plain.dll");
    EXPECT_EQ(foundAt(), "C:\\WINDOWS\\SYSTEM32\\plain.dll");
    ASSERT_EQ(machine->drives.setCurrentDirectory("D:\\"), 0u);
    EXPECT_EQ(foundAt(), "D:\\plain.dll");
}

TEST_F(ModuleLoading, ModulesOfTheLayerComeAndGoByTheirHooks) {
    int registered = 0;
    machine->modules.addSystemModule(
        "CONTROLS.DLL", [&] { ++registered; }, [&] { --registered; });
    EXPECT_EQ(GetModuleHandleA("controls"), nullptr);
    const HMODULE module = LoadLibraryA("controls.dll");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(LoadLibraryA("CONTROLS"), module);
    EXPECT_EQ(registered, 1);
    EXPECT_EQ(pathOf(module), "C:\\WINDOWS\\SYSTEM32\\CONTROLS.DLL");
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_EQ(registered, 1);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_EQ(registered, 0);
    EXPECT_FALSE(FreeLibrary(module));
    machine->modules.addSystemModule(
        "FULL.DLL", [] { throw std::bad_alloc(); }, [&] { --registered; });
    EXPECT_FAILS(LoadLibraryA("full.dll"), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(registered, 0) << "what has not come does not go";
    const HMODULE kernel = GetModuleHandleA("kernel32");
    EXPECT_EQ(LoadLibraryA("KERNEL32.DLL"), kernel);
    EXPECT_TRUE(FreeLibrary(kernel));
    EXPECT_TRUE(FreeLibrary(kernel));
    EXPECT_EQ(GetModuleHandleA("kernel32"), kernel);
}

TEST_F(ModuleLoading, TheEndOfAMachineUnloadsWhatItLoaded) {
    {
        const ScopedMachine inner;
        ASSERT_NE(LoadLibraryA(("Z:" + (built / "user.dll").string()).c_str()), nullptr);
        ASSERT_NE(LoadLibraryA(("Z:" + (built / "user.dll").string()).c_str()), nullptr);
        takeJournal();
    }
    // The journal went with the machine; that the modules did shows in what is mapped.
    EXPECT_FALSE(isMapped(built / "user.dll"));
    EXPECT_FALSE(isMapped(built / "base.dll"));
    ASSERT_NE(LoadLibraryA("user.dll"), nullptr);
    takeJournal();
    machine->modules.unloadAll();
    const Journal unloading = takeJournal();
    EXPECT_EQ(unloading.messages, userUnloads);
    EXPECT_EQ(unloading.entries[0].lParam, 1) << "the process ends";
}

TEST_F(ModuleLoading, AFailingCallLoadsNothing) {
    machine->gate.failFunction("LoadLibraryA", ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_FAILS(LoadLibraryA("user.dll"), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_FALSE(isMapped(built / "user.dll"));
}

}  // namespace
