#include <shlobj.h>

#include <gtest/gtest.h>

#include <string>

#include "CUtilsPath.h"
#include "diskio.h"
#include "path_cases.h"
#include "shortcut_bytes.h"
#include "support/fail_each_machine.h"
#include "support/temp_folder_machine.h"
#include "winlayer/machine.h"

namespace {

using UTILS::CUtilsPath;
using UTILS::UtilsString;
using winlayer::Installer;
using winlayer::Machine;
using winlayer::ScopedMachine;

const std::string product = "{AAAAAAAA-0000-0000-0000-000000000001}";
const std::string component = "{CCCCCCCC-0000-0000-0000-000000000001}";
const std::string absentComponent = "{CCCCCCCC-0000-0000-0000-000000000002}";
const std::string keyComponent = "{CCCCCCCC-0000-0000-0000-000000000003}";
const std::string package = "C:\\WINDOWS\\Installer\\1a2b.msi";
const std::string installed = "C:\\Programme-mit-langem-Namen\\Start.exe";
const std::string descriptor = "descriptor";
const std::string icon = "Start.ico";

// The ways by which the codes of a shortcut are found.
enum class Way { installer, bytes, block };

// Installs one product whose package knows the component behind its icon.
HMODULE install(Machine& machine) {
    Installer::Product& made = machine.installer.products[product];
    made.package = package;
    made.components[component] = {INSTALLSTATE_LOCAL, installed};
    made.components[absentComponent] = {INSTALLSTATE_ABSENT, ""};
    made.components[keyComponent] = {INSTALLSTATE_LOCAL, "02:\\SOFTWARE\\Rettung\\"};
    machine.installer.descriptors[descriptor] = {product, "Feature", component};
    machine.installer.packages[package] = {
        {{"Key", keyComponent}, {"Old", absentComponent}, {"Main", component}},
        {{"Other", icon}, {"Key", icon}, {"Old", icon}, {"Main", icon}}};
    return machine.addInstallerLibrary();
}

void put(std::string& bytes, std::size_t offset, const std::string& text) {
    bytes.replace(offset, text.size(), text);
}

// A block as the shell writes it, in the ANSI form alone.
std::string block(char signature, const std::string& text) {
    std::string bytes(sizeof(EXP_DARWIN_LINK), '\0');
    put(bytes, 0, std::string("\x14\x03\0\0", 4) + signature + std::string("\0\0\xA0", 3));
    put(bytes, 8, text);
    return bytes;
}

// The shortcut has no path of its own.
std::string shortcut(Way way, const std::string& named = "\\Installer\\" + product + "\\" + icon) {
    std::string bytes(reinterpret_cast<const char*>(shortcutOfTheLayer), 76);
    bytes[20] = '\0';
    if (way != Way::bytes) {
        bytes[21] = 0x10;
        return bytes + block(6, descriptor) + std::string(4, '\0');
    }
    return bytes + block(7, "%SystemRoot%" + named) + std::string(4, '\0');
}

// An installer that cannot tell.
UINT WINAPI noTarget(LPCSTR, LPSTR, LPSTR, LPSTR) {
    return ERROR_FUNCTION_FAILED;
}

HMODULE prepare(Machine& machine, Way way) {
    const HMODULE library = install(machine);
    if (way != Way::installer) {
        machine.modules.addFunction(library, "MsiGetShortcutTargetA",
                                    reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(&noTarget)));
    }
    return library;
}

std::string resolved(const std::string& link, int form = 0) {
    UtilsString target("before");
    const int result = CUtilsPath().ResolveLinkFile(link, target, form);
    EXPECT_EQ(result, target.length() != 0 ? 1 : 0);
    return target.c_str();
}

void expectNothingLeft(const Machine& machine) {
    EXPECT_EQ(machine.com.objects(), 0u);
    EXPECT_EQ(machine.com.uses(), 0u);
    EXPECT_EQ(machine.localMemory.blockCount(), 0u);
    EXPECT_EQ(machine.installer.openHandles(), 0u);
    EXPECT_EQ(machine.handles.openCount(), 0u);
}

// Hands on a shortcut for each of the ways, on a machine of its own where no other way is open.
template <class Check>
void onEachWay(Check check) {
    for (const Way way : {Way::installer, Way::bytes, Way::block}) {
        SCOPED_TRACE(static_cast<int>(way));
        ScopedMachine machine;
        prepare(*machine, way);
        const TempFolder folder;
        check(*machine, folder.file("a.lnk", shortcut(way)));
        expectNothingLeft(*machine);
    }
}

TEST(CUtilsPathLinksMachine, EachWayLeadsToTheInstalledFile) {
    onEachWay([](Machine&, const std::string& link) {
        EXPECT_EQ(resolved(link), installed);
        EXPECT_EQ(resolved(link, 1), installed) << "a file that is gone has no other form";
        EXPECT_EQ(GetModuleHandleA("MSI.DLL"), nullptr) << "freed with the last path that used it";
    });
}

// Its long names have short forms, under which they are found too.
class AliasDrive : public test::MemoryDrive {
public:
    DWORD facts(const std::string& path, winlayer::FileFacts& facts) override {
        const std::string alias = "PROGRA~1";
        const bool brief = path.starts_with(alias);
        const DWORD error = MemoryDrive::facts(
            brief ? "Programme-mit-langem-Namen" + path.substr(alias.size()) : path, facts);
        if (facts.name == "Programme-mit-langem-Namen") {
            facts.shortName = alias;
        }
        return error;
    }
};

TEST(CUtilsPathLinksMachine, TheFormSelectsTheLongOrTheShortNameOfWhatIsInstalled) {
    const std::string brief = "C:\\PROGRA~1\\Start.exe";
    ScopedMachine machine;
    machine->drives.mount('C', std::make_shared<AliasDrive>(), DRIVE_FIXED);
    install(*machine);
    ASSERT_TRUE(CreateDirectoryA("C:\\Programme-mit-langem-Namen", nullptr));
    writeFile(installed, "x");
    writeFile("C:\\a.lnk", shortcut(Way::installer));
    for (const std::string& stored : {installed, brief}) {
        machine->installer.products[product].components[component].path = stored;
        EXPECT_EQ(resolved("C:\\a.lnk", 0), installed);
        EXPECT_EQ(resolved("C:\\a.lnk", 1), brief);
    }
}

TEST(CUtilsPathLinksMachine, WhatIsNotInstalledAsAFileIsNoTarget) {
    onEachWay([](Machine& machine, const std::string& link) {
        Installer::Component& part = machine.installer.products[product].components[component];
        for (const Installer::Component& state :
             {Installer::Component{INSTALLSTATE_LOCAL, "02:\\SOFTWARE\\Rettung\\"},
              Installer::Component{INSTALLSTATE_BROKEN, installed},
              Installer::Component{INSTALLSTATE_ABSENT, ""},
              Installer::Component{INSTALLSTATE_LOCAL, std::string(3000, 'x')}}) {
            part = state;
            EXPECT_EQ(resolved(link), "") << state.state;
        }
        machine.installer.products.clear();
        EXPECT_EQ(resolved(link), "");
    });
}

TEST(CUtilsPathLinksMachine, OrdinaryShortcutsNeedNoInstaller) {
    const std::string bytes(reinterpret_cast<const char*>(shortcutOfTheLayer), sizeof shortcutOfTheLayer);
    for (const char* const missing :
         {"MSI.DLL", "", "MsiOpenDatabaseA", "MsiDatabaseOpenViewA", "MsiViewExecute", "MsiViewFetch",
          "MsiRecordGetStringA", "MsiGetComponentPathA", "MsiGetProductInfoA", "MsiCloseHandle",
          "MsiGetShortcutTargetA"}) {
        SCOPED_TRACE(missing);
        ScopedMachine machine;
        const TempFolder folder;
        if (missing != std::string("MSI.DLL")) {
            machine->modules.removeFunction(install(*machine), missing);
        }
        EXPECT_EQ(resolved(folder.file("a.lnk", bytes)), "C:\\Rettung\\Start.exe");
        const std::string advertised = folder.file("b.lnk", shortcut(Way::installer));
        EXPECT_EQ(resolved(advertised), *missing == 0 ? installed : "");
        expectNothingLeft(*machine);
    }
}

TEST(CUtilsPathLinksMachine, AnInstallerThatDecomposesNothingLeavesTheOtherWays) {
    ScopedMachine machine;
    machine->modules.removeFunction(prepare(*machine, Way::block), "MsiDecomposeDescriptorA");
    const TempFolder folder;
    EXPECT_EQ(resolved(folder.file("a.lnk", shortcut(Way::bytes))), installed);
    EXPECT_EQ(resolved(folder.file("b.lnk", shortcut(Way::block))), "");
    EXPECT_THROW(resolved(folder / "missing.lnk"), UTILS::DiskIoException);
    expectNothingLeft(*machine);
}

TEST(CUtilsPathLinksMachine, CodesAreTakenOnlyFromAWholePlaceOfTheIcon) {
    ScopedMachine machine;
    install(*machine);
    const TempFolder folder;
    const auto named = [&](const std::string& text) {
        return resolved(folder.file("a.lnk", shortcut(Way::bytes, text)));
    };
    EXPECT_EQ(named("\\Installer\\" + product + "\\" + icon), installed);
    EXPECT_EQ(named("Installer\\" + product + "\\" + icon + "\nmore"), installed);
    EXPECT_EQ(named("\\Installer\\" + product), "");
    EXPECT_EQ(named("\\Installer\\" + product + "\\"), "");
    EXPECT_EQ(named("\\Installer\\" + product + "\n\\" + icon), "");
    EXPECT_EQ(named("\\Installer\\{" + std::string(200, '8') + "}\\" + icon), "");
    EXPECT_EQ(named("\\Installer\\{}\\" + icon), "");
    EXPECT_EQ(named("\\Installer\\" + product + "\\" + icon + "' OR '1' = '1"), "");
    EXPECT_EQ(named("\\Installer\\" + product + "\\other.ico"), "");
    // The bytes may end anywhere.
    const std::string place = "Installer\\" + product + "\\" + icon;
    for (std::size_t length = 0; length <= place.size(); ++length) {
        const std::string link = folder.file("b.lnk", place.substr(0, length));
        EXPECT_EQ(resolved(link), length == place.size() ? installed : "") << length;
    }
    expectNothingLeft(*machine);
}

TEST(CUtilsPathLinksMachine, ABlockThatIsTooShortHasNoDescriptor) {
    ScopedMachine machine;
    prepare(*machine, Way::block);
    const TempFolder folder;
    std::string bytes = shortcut(Way::block);
    EXPECT_EQ(resolved(folder.file("a.lnk", bytes)), installed);
    put(bytes, 76, std::string("\x20\0\0\0", 4));
    bytes = bytes.substr(0, 76 + 0x20) + std::string(4, '\0');
    EXPECT_EQ(resolved(folder.file("a.lnk", bytes)), "");
    std::string full = shortcut(Way::block);
    put(full, 84, std::string(MAX_PATH, 'd'));
    EXPECT_EQ(resolved(folder.file("a.lnk", full)), "") << "a text without an end";
    std::string unflagged = shortcut(Way::block);
    unflagged[21] = 0;
    EXPECT_EQ(resolved(folder.file("a.lnk", unflagged)), "");
    expectNothingLeft(*machine);
}

TEST(CUtilsPathLinksMachine, EveryTruncationIsAFailureAndNothingElse) {
    ScopedMachine machine;
    install(*machine);
    const auto drive = test::MemoryDrive::mount(*machine, 'C');
    const CUtilsPath any;
    for (const std::string& whole :
         {std::string(reinterpret_cast<const char*>(shortcutOfTheLayer), sizeof shortcutOfTheLayer),
          std::string(reinterpret_cast<const char*>(shortcutOfWine), sizeof shortcutOfWine),
          shortcut(Way::installer)}) {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            drive->add("a.lnk", whole.substr(0, length));
            UtilsString target;
            ASSERT_EQ(any.ResolveLinkFile("C:\\a.lnk", target, 0), 0) << length;
            ASSERT_STREQ(target.c_str(), "") << length;
        }
    }
    expectNothingLeft(*machine);
}

TEST(CUtilsPathLinksMachine, TheLayerWritesTheBytesThatWineHasRead) {
    ScopedMachine machine;
    const TempFolder folder;
    ASSERT_EQ(CUtilsPath::CreateLinkFile("C:\\Rettung\\Start.exe", folder / "a.lnk", "Notfall"), 1);
    EXPECT_EQ(readFile(folder / "a.lnk"),
              std::string(reinterpret_cast<const char*>(shortcutOfTheLayer), sizeof shortcutOfTheLayer));
}

// A failed call leaves an older shortcut's target or the new one, never a wrong answer, and nothing open.
TEST(CUtilsPathLinksMachine, NoFailingCallOfMakingAndResolvingIsTakenForSuccess) {
    int created = 0;
    std::string target;
    test::failEachCall(
        winlayer::WindowsVersion::XP, ERROR_NOT_ENOUGH_MEMORY, [] {},
        [&] {
            created = CUtilsPath::CreateLinkFile("C:\\t.exe", "C:\\a.lnk", "");
            target = resolved("C:\\a.lnk");
        },
        [&](bool failed) {
            expectNothingLeft(Machine::current());
            EXPECT_TRUE(target == "" || target == "C:\\t.exe") << target;
            EXPECT_TRUE(created == 1 || (target == "" && !exists("C:\\a.lnk")));
            EXPECT_TRUE(failed || !target.empty());
        });
}

TEST(CUtilsPathLinksMachine, NoFailingCallOfTheInstallerLeavesAnythingOpen) {
    for (const Way way : {Way::installer, Way::bytes, Way::block}) {
        SCOPED_TRACE(static_cast<int>(way));
        std::string target;
        test::failEachCall(
            winlayer::WindowsVersion::XP, ERROR_NOT_ENOUGH_MEMORY,
            [&] {
                prepare(Machine::current(), way);
                writeFile("C:\\a.lnk", shortcut(way));
            },
            [&] {
                target.clear();
                try {
                    target = resolved("C:\\a.lnk");
                } catch (const UTILS::DiskIoException&) {
                }
            },
            [&](bool failed) {
                expectNothingLeft(Machine::current());
                EXPECT_TRUE(target == "" || target == installed) << target;
                EXPECT_TRUE(failed || !target.empty());
            });
    }
}

TEST(CUtilsPathLinksMachine, TheInstallerIsLoadedOnceForAPathAndItsCopies) {
    ScopedMachine machine;
    install(*machine);
    const TempFolder folder;
    const std::string link = folder.file("a.lnk", shortcut(Way::installer));
    machine->gate.startRecording();
    const auto loads = [&] {
        std::size_t count = 0;
        for (const std::string& call : machine->gate.calls()) {
            count += call == "LoadLibraryA" ? 1 : 0;
        }
        return count;
    };
    {
        CUtilsPath original = path(link);
        EXPECT_EQ(loads(), 0u) << "most paths are no shortcuts";
        UtilsString target;
        EXPECT_EQ(original.ResolveLinkFile(target, 0), 1);
        CUtilsPath copy(original);
        original = path(folder.path());
        EXPECT_EQ(copy.ResolveLinkFile(target, 0), 1);
        EXPECT_EQ(copy.ResolveLinkFile(0), 1);
        EXPECT_EQ(copy.GetPath(), installed);
        EXPECT_EQ(loads(), 1u);
    }
    EXPECT_EQ(GetModuleHandleA("MSI.DLL"), nullptr);
}

}  // namespace
