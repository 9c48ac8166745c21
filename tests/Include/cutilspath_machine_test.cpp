#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>

#include "CUtilsPath.h"
#include "path_cases.h"
#include "std_exception.h"
#include "support/fail_each_machine.h"
#include "support/temp_folder_machine.h"
#include "winlayer/machine.h"

namespace {

namespace fs = std::filesystem;
using UTILS::CUtilsPath;
using UTILS::UtilsString;
using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

TEST(CUtilsPathMachine, NamesTheComputerAndDoesWithoutItsName) {
    ScopedMachine machine;
    machine->computerName = "PC1";
    CUtilsPath named = path("C:\\Temp\\a.txt");
    EXPECT_STREQ(named.GetPathUNC(), "\\\\PC1\\Temp\\a.txt");
    machine->gate.failFunction("GetComputerNameA", ERROR_GEN_FAILURE);
    EXPECT_EQ(named.SetPath("C:\\Temp\\b.txt"), 1);
    EXPECT_STREQ(named.GetPath(), "C:\\Temp\\b.txt");
    EXPECT_STREQ(named.GetPathUNC(), "");
}

TEST(CUtilsPathMachine, SettingAPathCostsTwoCallsOfTheSystem) {
    ScopedMachine machine;
    CUtilsPath named = path("C:\\a");
    machine->gate.startRecording();
    named += "missing.txt";
    EXPECT_EQ(machine->gate.fallibleCalls(), 2u);
    machine->gate.startRecording();
    named.SetPath("A:\\");
    EXPECT_EQ(machine->gate.fallibleCalls(), 1u) << "the root of a drive without a medium is left alone";
}

TEST(CUtilsPathMachine, WithoutACurrentDirectoryARelativePathIsRefused) {
    ScopedMachine machine;
    CUtilsPath named = path("C:\\a");
    machine->gate.failFunction("GetCurrentDirectoryA", ERROR_ACCESS_DENIED);
    EXPECT_EQ(named.SetPath("b"), 0);
    EXPECT_STREQ(named.GetPath(), "C:\\a");
    EXPECT_EQ(CUtilsPath::GetCurrentDir(), nullptr);
    EXPECT_EQ(!CUtilsPath::UGetCurrentDir(), 1);
}

TEST(CUtilsPathMachine, KnowsTheDirectoriesOfTheSystem) {
    ScopedMachine machine(WindowsVersion::NT4);
    EXPECT_STREQ(CUtilsPath::GetWindowsDir(), "C:\\WINNT");
    EXPECT_EQ(machine->systemDirectory(), CUtilsPath::GetSystemDirectory());
    const char* const first = CUtilsPath::GetCurrentDir();
    EXPECT_NE(first, CUtilsPath::GetWindowsDir()) << "a buffer each";
    SetCurrentDirectoryA("C:\\WINNT");
    EXPECT_EQ(first, CUtilsPath::GetCurrentDirectory());
    EXPECT_STREQ(first, "C:\\WINNT") << "overwritten by the next call";

    CUtilsPath named;
    EXPECT_EQ(named.SetDirToSystemDirectory(), 1);
    EXPECT_TRUE(named == machine->systemDirectory());
    EXPECT_EQ(named.SetPathToTemp(), 1);
    EXPECT_TRUE(CUtilsPath::UGetTempDir() == std::string(named.GetPath()) + "\\");
    for (const char* function : {"GetTempPathA", "GetWindowsDirectoryA", "GetSystemDirectoryA"}) {
        machine->gate.failFunction(function, ERROR_GEN_FAILURE);
    }
    EXPECT_EQ(CUtilsPath::GetTempDir(), nullptr);
    EXPECT_EQ(CUtilsPath::GetWindowsDir(), nullptr);
    EXPECT_EQ(CUtilsPath::GetSystemDir(), nullptr);
    EXPECT_EQ(named.SetDirToTemp() + named.SetDirToWindowsDir() + named.SetPathToSystemDir(), 0);
}

TEST(CUtilsPathMachine, GoesToTheDirectoryOfAModule) {
    ScopedMachine machine;
    const std::string deep = "C:\\" + std::string(700, 'd');
    const HMODULE near = machine->modules.add("near.dll", "C:\\Program Files\\Suite\\near.dll");
    const HMODULE far = machine->modules.add("far.dll", deep + "\\far.dll");
    CUtilsPath named;
    EXPECT_EQ(named.SetDirToModuleName(near), 1);
    EXPECT_STREQ(named.GetPath(), "C:\\Program Files\\Suite");
    EXPECT_EQ(named.SetPathToModuleName(far), 1);
    EXPECT_EQ(deep, named.GetPath());
    EXPECT_EQ(named.SetDirToModuleName(nullptr), 1);
    EXPECT_EQ(named.IsADir(), 1) << named.GetPath();
    machine->gate.failFunction("GetModuleFileNameA", ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(named.SetDirToModuleName(near), 0);
}

TEST(CUtilsPathMachine, RebuildsLongNamesOnAWindowsThatDoesNotKnowThem) {
    ScopedMachine machine(WindowsVersion::Windows95);
    const HMODULE kernel = machine->modules.find("kernel32.dll");
    machine->modules.removeFunction(kernel, "GetLongPathNameA");
    const TempFolder folder;
    folder.directory("Long Folder");
    folder.file("Long Folder\\Some File.text");
    machine->errorMode = 1;
    const std::string shouted = folder / "LONG FOLDER\\SOME FILE.TEXT";
    EXPECT_EQ(folder / "Long Folder\\Some File.text", path(shouted).GetLongPathName());
    machine->gate.startRecording();
    EXPECT_EQ(path(folder / "LONG FOLDER\\gone\\x").GetLongPathName(), nullptr);
    EXPECT_EQ(CUtilsPath::GetLongPathName(folder / "LONG FOLDER\\*.text"), nullptr);
    EXPECT_STREQ(CUtilsPath::GetLongPathName("C:\\"), "C:\\");
    EXPECT_EQ(machine->errorMode, 1u);
    const std::vector<std::string> calls = machine->gate.calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "SetErrorMode"), 2);
    EXPECT_EQ(machine->handles.openCount(), 0u);

    const InDirectory inside(folder.path());
    EXPECT_STREQ(CUtilsPath::GetLongPathName("LONG FOLDER\\SOME FILE.TEXT"), "Long Folder\\Some File.text");
}

std::string reportOf(CUtilsPath walked) {
    walked.SetExceptionHandling();
    try {
        return "result " + std::to_string(walked.Search());
    } catch (const UTILS::std_exception& report) {
        return report.what();
    }
}

TEST(CUtilsPathMachine, AFailedSearchAtAnyPointEndsTheWalk) {
    ScopedMachine machine;
    const TempFolder folder;
    folder.directory("a");
    folder.directory("a\\b");
    folder.file("a\\x");
    const struct {
        const char* function;
        DWORD error;
        std::size_t skip;
        int result;
    } cases[] = {
        {"FindFirstFileA", ERROR_NOT_READY, 0, 0},
        {"FindFirstFileA", ERROR_FILE_NOT_FOUND, 0, 1},
        {"FindFirstFileA", ERROR_PATH_NOT_FOUND, 1, 0},  // gone since it was listed
        {"FindNextFileA", ERROR_CRC, 0, 0},
        {"FindNextFileA", ERROR_CRC, 5, 0},
        {"GetFileAttributesA", ERROR_ACCESS_DENIED, 0, 0},
    };
    CUtilsPath walked = path(folder.path());
    for (const auto& row : cases) {
        SCOPED_TRACE(row.function + std::to_string(row.skip));
        machine->gate.failFunction(row.function, row.error, row.skip, 1);
        EXPECT_EQ(walked.Search(), row.result);
        EXPECT_EQ(machine->handles.openCount(), 0u);
        machine->gate.reset();
    }
    machine->gate.failFunction("FindFirstFileA", ERROR_NOT_READY);
    const std::string report = reportOf(walked);
    EXPECT_NE(report.find("; Type:  173; Error Number: 21; WinError Description: "), std::string::npos)
        << report;
    EXPECT_TRUE(report.ends_with("; Error Condition:  Error in the FindFile Command")) << report;
    machine->gate.reset();
}

TEST(CUtilsPathMachine, CreationEndsWhereALevelCannotBeMade) {
    ScopedMachine machine;
    // A refused first attempt stays unreported. Then the climb to the first level and the way down again.
    constexpr int results[] = {1, 0, 0, 0, 0};
    for (std::size_t k = 0; k < std::size(results); ++k) {
        const TempFolder folder;
        CUtilsPath created = path(folder / "a\\b\\c");
        machine->gate.failFunction("CreateDirectoryA", ERROR_ACCESS_DENIED, k, 1);
        EXPECT_EQ(created.CreateDirectory(), results[k]) << k;
        machine->gate.reset();
        EXPECT_EQ(created.IsADir(), 0) << k;
    }
    EXPECT_EQ(path("Q:\\a\\b").CreateDirectory(), 0) << "no such drive";
}

// What reports success must have done its work, and no search stays open.
TEST(CUtilsPathMachine, NoFailingCallOfAWalkOrDeletionIsTakenForSuccess) {
    int deleted = 0;
    test::failEachCall(
        WindowsVersion::XP, ERROR_ACCESS_DENIED,
        [] {
            for (const char* folder : {"C:\\t", "C:\\t\\a", "C:\\t\\a\\b"}) {
                CreateDirectoryA(folder, nullptr);
            }
            writeFile("C:\\t\\y", "1");
            writeFile("C:\\t\\a\\b\\x", "12345");
        },
        [&] {
            CUtilsPath tree("C:\\t", 0, 1, 0);
            EXPECT_STREQ(tree.GetPath(), "C:\\t");
            deleted = 0;
            try {
                if (tree.Search()) {
                    EXPECT_EQ(tree.GetTotalFiles(), 2u);
                    EXPECT_EQ(tree.GetTotalSubDirs(), 2u);
                    EXPECT_EQ(tree.GetDirSize(), 6u);
                }
                deleted = tree.DeleteDir();
            } catch (const std::exception&) {
            }
        },
        [&](bool failed) {
            EXPECT_EQ(deleted, exists("C:\\t") ? 0 : 1);
            EXPECT_TRUE(failed || deleted == 1);
        });
}

struct Entry {
    bool directory;
    std::uint64_t size;
    DWORD attributes;
};

// What a walk must list below a host folder, found without the layer.
void listIndependently(const fs::path& folder, const std::string& name, bool guardedToo,
                       const std::map<std::string, Entry>& made, std::map<std::string, Entry>& listed) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const std::string entryName = name + "\\" + entry.path().filename().string();
        const Entry& facts = made.at(entryName);
        if ((facts.attributes & 7) != 0 && !guardedToo) {
            continue;
        }
        listed.emplace(entryName,
                       Entry{entry.is_directory(), entry.is_directory() ? 0 : entry.file_size(), 0});
        if (entry.is_directory()) {
            listIndependently(entry.path(), entryName, guardedToo, made, listed);
        }
    }
}

TEST(CUtilsPathMachine, RandomTreesAreListedAsTheHostListsThem) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 10; ++round) {
        ScopedMachine machine;
        const TempFolder folder;
        std::map<std::string, Entry> made;
        std::vector<std::string> folders{folder.path()};
        for (auto count = random() % 80; count > 0; --count) {
            const std::string name =
                folders[random() % folders.size()] + "\\n " + std::to_string(made.size());
            const bool directory = random() % 3 == 0;
            const std::uint64_t size = directory ? 0 : random() % 3000;
            if (directory) {
                fs::create_directory(hostPath(name));
                folders.push_back(name);
            } else {
                std::ofstream(hostPath(name)) << std::string(size, 'x');
            }
            made[name] = {directory, size,
                          random() % 4 == 0 ? DWORD{1} << random() % 3 : FILE_ATTRIBUTE_NORMAL};
        }
        for (const auto& [name, entry] : made) {
            ASSERT_TRUE(SetFileAttributesA(name.c_str(), entry.attributes));
        }
        for (const bool guardedToo : {false, true}) {
            std::map<std::string, Entry> expected;
            listIndependently(hostPath(folder), folder.path(), guardedToo, made, expected);
            CUtilsPath walked(folder.path(), 1, guardedToo, 1);
            std::uint64_t bytes = 0;
            std::set<std::string> expectedFiles;
            std::set<std::string> expectedDirectories;
            for (const auto& [name, entry] : expected) {
                (entry.directory ? expectedDirectories : expectedFiles).insert(name);
                bytes += entry.size;
            }
            const auto setOf = [](const std::vector<std::string>& entries) {
                return std::set(entries.begin(), entries.end());
            };
            EXPECT_EQ(setOf(files(walked)), expectedFiles);
            EXPECT_EQ(setOf(directories(walked)), expectedDirectories);
            EXPECT_EQ(walked.GetTotalFiles(), expectedFiles.size());
            EXPECT_EQ(walked.GetTotalSubDirs(), expectedDirectories.size());
            EXPECT_EQ(walked.GetDirSize(), bytes);
        }
    }
}

// Walked before or not, and in whatever order its entries are listed: what a link leads to stays.
TEST(CUtilsPathMachine, DeletesALinkAndNothingThroughIt) {
    ScopedMachine machine;
    const TempFolder folder;
    const fs::path host = hostPath(folder);
    for (const int walked : {0, 1}) {
        for (const char* directory : {"away/deep", "tree/a"}) fs::create_directories(host / directory);
        for (const char* file : {"away/kept", "away/deep/kept", "tree/a/gone"})
            std::ofstream(host / file) << "x";
        fs::create_symlink("../../away", host / "tree/a/link");
        fs::create_symlink("../away/kept", host / "tree/file");
        fs::create_symlink("..", host / "tree/circle");
        if (walked != 0) fs::remove(host / "tree/circle");  // no walk gets through it
        CUtilsPath tree = path(folder / "tree");
        tree.SetScanRO();
        EXPECT_EQ(walked != 0 ? tree.Search() : 1, 1);
        tree.SortDirs();
        EXPECT_EQ(tree.DeleteDir(), 1);
        EXPECT_FALSE(fs::exists(host / "tree"));
        fs::create_symlink("away", host / "link");
        EXPECT_EQ(path(folder / "link").DeleteDir(), 1);
        EXPECT_FALSE(fs::exists(fs::symlink_status(host / "link")));
        EXPECT_TRUE(fs::exists(host / "away/kept") && fs::exists(host / "away/deep/kept"));
    }
}

TEST(CUtilsPathMachine, WalksAndDeletesATreeDeeperThanAnyOnADisk) {
    ScopedMachine machine;
    const TempFolder folder;
    fs::path deepest = hostPath(folder) / "top";
    fs::create_directory(deepest);
    for (int level = 0; level < 300; ++level) {
        deepest /= "d";
        fs::create_directory(deepest);
    }
    std::ofstream(deepest / "f") << "x";
    CUtilsPath tree = path(folder / "top");
    EXPECT_EQ(tree.Search(), 1);
    EXPECT_EQ(tree.GetTotalSubDirs(), 300u);
    EXPECT_EQ(tree.GetTotalFiles(), 1u);
    EXPECT_EQ(tree.DeleteDir(), 1);
    EXPECT_FALSE(fs::exists(hostPath(folder) / "top"));
    EXPECT_EQ(machine->handles.openCount(), 0u);
}

}  // namespace
