#include "winlayer/machine.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>
#include <vector>

#include "support/expect_fails.h"
#include "support/open_path.h"
#include "support/temp_folder_machine.h"
#include "winlayer/base/handle_table.h"
#include "winlayer/base/host_errors.h"
#include "winlayer/diskette/diskette_drive.h"

namespace {

namespace fs = std::filesystem;
using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

// The codes by which programs tell one failure from another.
TEST(HostErrors, becomeTheCodesThatProgramsTest) {
    const std::pair<int, DWORD> rows[] = {
        {ENOENT, 2},   {ENOTDIR, 3},  {EMFILE, 4},      {ENFILE, 4},         {EACCES, 5},     {EPERM, 5},
        {EISDIR, 5},   {EBADF, 6},    {ENOMEM, 8},      {EROFS, 19},         {ENOMEDIUM, 21}, {ENXIO, 21},
        {EBUSY, 32},   {ETXTBSY, 32}, {ENOTSUP, 50},    {EOPNOTSUPP, 50},    {EEXIST, 80},    {EINVAL, 87},
        {ENOSPC, 112}, {EDQUOT, 112}, {ENOTEMPTY, 145}, {ENAMETOOLONG, 206}, {EFBIG, 223},    {EIO, 1117},
        {ELOOP, 1921}, {ECHILD, 31},  {99999, 31},
    };
    for (const auto& [host, windows] : rows) {
        EXPECT_EQ(winlayer::windowsError(host), windows) << host;
    }
}

TEST(Machine, keepsAPrivateDriveUntilItGoes) {
    fs::path onHost;
    {
        ScopedMachine machine;
        const TempFolder folder;
        onHost = hostPath("C:\\");
        folder.file("a.txt", "x");
        writeFile("C:\\left over", "y");
        EXPECT_TRUE(fs::exists(onHost / "left over"));
    }
    EXPECT_FALSE(fs::exists(onHost));
}

TEST(Machine, hasTheDirectoriesOfItsWindows) {
    struct Row {
        WindowsVersion version;
        const char* windows;
        const char* system;
    };
    const Row rows[] = {{WindowsVersion::Windows95, "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM"},
                        {WindowsVersion::WindowsMe, "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM"},
                        {WindowsVersion::NT4, "C:\\WINNT", "C:\\WINNT\\SYSTEM32"},
                        {WindowsVersion::Windows2000, "C:\\WINNT", "C:\\WINNT\\SYSTEM32"},
                        {WindowsVersion::XP, "C:\\WINDOWS", "C:\\WINDOWS\\SYSTEM32"}};
    for (const Row& row : rows) {
        ScopedMachine machine(row.version);
        std::array<char, MAX_PATH> buffer{};
        EXPECT_EQ(GetWindowsDirectoryA(buffer.data(), MAX_PATH), std::string(row.windows).size());
        EXPECT_STREQ(buffer.data(), row.windows);
        GetSystemDirectoryA(buffer.data(), MAX_PATH);
        EXPECT_STREQ(buffer.data(), row.system);
        EXPECT_EQ(GetFileAttributesA(row.system), FILE_ATTRIBUTE_DIRECTORY);
        GetTempPathA(MAX_PATH, buffer.data());
        EXPECT_EQ(buffer.data(), std::string(row.windows) + "\\TEMP\\");
        EXPECT_EQ(GetWindowsDirectoryA(buffer.data(), 3), std::string(row.windows).size() + 1);
    }
}

TEST(Machine, refusesToLoseItsCurrentDirectory) {
    for (const auto& [version, error] : {std::pair{WindowsVersion::XP, ERROR_SHARING_VIOLATION},
                                         std::pair{WindowsVersion::Windows98, ERROR_CURRENT_DIRECTORY}}) {
        ScopedMachine machine(version);
        CreateDirectoryA("C:\\Here", nullptr);
        SetCurrentDirectoryA("C:\\HERE");
        EXPECT_FAILS(RemoveDirectoryA("..\\here"), error);
        SetCurrentDirectoryA("..");
        EXPECT_TRUE(RemoveDirectoryA("here"));
    }
}

TEST(Drives, areWhatIsMounted) {
    ScopedMachine machine;
    machine->drives.unmount('Z');
    EXPECT_EQ(GetLogicalDrives(), DWORD{1u << 2});
    machine->drives.mount('a', nullptr, DRIVE_REMOVABLE);
    EXPECT_EQ(GetLogicalDrives(), DWORD{1u | 1u << 2});
    EXPECT_EQ(GetDriveTypeA("A:\\"), DRIVE_REMOVABLE);
    EXPECT_EQ(GetDriveTypeA("B:\\"), DRIVE_NO_ROOT_DIR);
    EXPECT_EQ(GetDriveTypeA("C:\\WINDOWS"), DRIVE_NO_ROOT_DIR);
    EXPECT_EQ(GetDriveTypeA(nullptr), DRIVE_FIXED);
    EXPECT_FAILS(GetFileAttributesA("A:\\x"), ERROR_NOT_READY);
    EXPECT_FAILS(GetFileAttributesA("B:\\x"), ERROR_PATH_NOT_FOUND);
    for (const auto& [root, error] :
         {std::pair{"C:", ERROR_INVALID_NAME}, std::pair{"Q:\\", ERROR_PATH_NOT_FOUND},
          std::pair{"C:\\WINDOWS\\", ERROR_DIR_NOT_ROOT}, std::pair{"A:\\", ERROR_NOT_READY}}) {
        EXPECT_FAILS(GetVolumeInformationA(root, nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0), error)
            << root;
        EXPECT_FAILS(SetVolumeLabelA(root, "X"), error) << root;
    }
}

// A drive's raw device is Windows NT's way to it, VWIN32 that of the other family.
TEST(Drives, haveTheDevicesOfTheirWindows) {
    for (const WindowsVersion version :
         {WindowsVersion::Windows95, WindowsVersion::WindowsMe, WindowsVersion::NT351, WindowsVersion::XP}) {
        ScopedMachine machine(version);
        machine->drives.mount('A', winlayer::DisketteDrive::make(std::make_unique<winlayer::MemoryStore>()),
                              DRIVE_REMOVABLE);
        const auto opened = [](const char* device, DWORD disposition = OPEN_EXISTING) {
            return errorOfOpen(device, GENERIC_READ, disposition, FILE_FLAG_DELETE_ON_CLOSE);
        };
        const DWORD onNt = winlayer::isNt(version) ? 0 : ERROR_FILE_NOT_FOUND;
        const DWORD onOthers = winlayer::isNt(version) ? ERROR_FILE_NOT_FOUND : 0;
        EXPECT_EQ(opened("\\\\.\\A:"), onNt);
        EXPECT_EQ(opened("\\\\.\\a:"), onNt);
        EXPECT_EQ(opened("\\\\.\\VWIN32"), onOthers);
        EXPECT_EQ(opened("\\\\.\\vwin32.vxd"), onOthers);
        EXPECT_EQ(opened("\\\\.\\B:"), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(opened("\\\\.\\C:"), ERROR_FILE_NOT_FOUND) << "a folder has none";
        EXPECT_EQ(opened("\\\\.\\PHYSICALDRIVE1"), ERROR_FILE_NOT_FOUND);
        EXPECT_EQ(opened("\\\\.\\A:", CREATE_ALWAYS), ERROR_INVALID_PARAMETER);
        EXPECT_EQ(machine->handles.openCount(), 0u);
    }
}

TEST(Drives, translateHostPathsBothWays) {
    ScopedMachine machine;
    const TempFolder folder;
    folder.directory("Sub");
    const fs::path host = hostPath(folder);
    EXPECT_EQ(machine->drives.fromHost(host / "Sub/a.txt"), folder / "Sub\\a.txt")
        << "the private drive is nearest";
    EXPECT_EQ(machine->drives.fromHost("/"), "Z:\\");
    EXPECT_EQ(machine->drives.fromHost("/usr/../etc/"), "Z:\\etc");
    EXPECT_EQ(machine->drives.fromHost(host.string() + "x/a"), folder.path() + "x\\a");
    EXPECT_EQ(hostPath(folder / "SUB\\new"), host / "Sub" / "new");
    EXPECT_EQ(hostPath("Z:\\"), fs::path("/"));
    fs::create_directories(host / "deep/er");
    fs::create_directory_symlink("deep/er", host / "link");
    EXPECT_EQ(machine->drives.fromHost(host / "link/../a.txt"), folder / "deep\\a.txt");
    for (const char* name : {"\xE4\xBD\xA0", "a.", "a ", "a /b", "a\\b", "a?"}) {
        EXPECT_THROW(machine->drives.fromHost(host / name), std::invalid_argument) << name;
    }
    EXPECT_THROW(machine->drives.toHost("Q:\\x"), std::invalid_argument);
    machine->drives.unmount('Z');
    EXPECT_THROW(machine->drives.fromHost("/nowhere"), std::invalid_argument);
}

struct Thing final : winlayer::KernelObject {};

TEST(HandleTable, recognisesStaleHandlesInReusedPlaces) {
    winlayer::HandleTable table;
    std::vector<HANDLE> closed;
    for (int i = 0; i < 3000; ++i) {
        const HANDLE handle = table.add(std::make_shared<Thing>());
        const auto value = reinterpret_cast<std::uintptr_t>(handle);
        ASSERT_TRUE(value != 0 && value % 4 == 0 && value < 0x80000000u);
        ASSERT_NE(table.get<Thing>(handle), nullptr);
        ASSERT_NE(table.remove(handle), nullptr);
        closed.push_back(handle);
    }
    const HANDLE open = table.add(std::make_shared<Thing>());
    for (const HANDLE handle : closed) {
        ASSERT_EQ(table.get<Thing>(handle), nullptr);
        ASSERT_EQ(table.remove(handle), nullptr);
    }
    EXPECT_EQ(table.openCount(), 1u);
    // The same place and generation in a value that no handle has.
    const auto value = reinterpret_cast<std::uintptr_t>(open);
    for (const std::uintptr_t wrong : {value + 1, value | 0x80000000u, value | std::uintptr_t{1} << 40}) {
        EXPECT_EQ(table.get<Thing>(reinterpret_cast<HANDLE>(wrong)), nullptr);
    }
}

TEST(HandleTable, refusesMoreThanItCanName) {
    winlayer::HandleTable table;
    const auto thing = std::make_shared<Thing>();
    HANDLE last = nullptr;
    for (int i = 0; i < 65'536; ++i) {
        last = table.add(thing);
        ASSERT_NE(last, nullptr);
    }
    EXPECT_EQ(table.add(thing), nullptr);
    table.remove(last);
    EXPECT_NE(table.add(thing), nullptr);
}

TEST(Handles, areCountedAcrossThreads) {
    ScopedMachine machine;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < 2000; ++i) {
                const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
                EXPECT_TRUE(SetEvent(event));
                EXPECT_TRUE(CloseHandle(event));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(machine->handles.openCount(), 0u);
}

TEST(Version, recordHasItsSizeChecked) {
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

TEST(ComputerName, mustFitWithItsZero) {
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

LONGLONG counter() {
    LARGE_INTEGER count{};
    EXPECT_TRUE(QueryPerformanceCounter(&count));
    return count.QuadPart;
}

// Neither a sleep nor a wait takes real time while a test holds the clock still.
TEST(Clock, movesOnlyWhenToldWhileItIsStopped) {
    ScopedMachine machine;
    machine->clock.stop();
    LARGE_INTEGER frequency{};
    ASSERT_TRUE(QueryPerformanceFrequency(&frequency));
    const DWORD ticks = GetTickCount();
    const LONGLONG count = counter();
    EXPECT_EQ(counter(), count);
    const auto hostStart = std::chrono::steady_clock::now();
    Sleep(3'600'000);
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    EXPECT_EQ(WaitForSingleObject(event, 15'000), WAIT_TIMEOUT);
    SetEvent(event);
    EXPECT_EQ(WaitForSingleObject(event, 15'000), WAIT_OBJECT_0);
    CloseHandle(event);
    EXPECT_LT(std::chrono::steady_clock::now() - hostStart, std::chrono::minutes(1));
    machine->clock.advance(500'000'000);
    EXPECT_EQ(GetTickCount() - ticks, 3'615'500u);
    EXPECT_EQ(counter() - count, 3'615 * frequency.QuadPart + frequency.QuadPart / 2);
}

TEST(Clock, followsTheHosts) {
    const ScopedMachine machine;
    const LONGLONG count = counter();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    LARGE_INTEGER frequency{};
    ASSERT_TRUE(QueryPerformanceFrequency(&frequency));
    EXPECT_GE(counter() - count, frequency.QuadPart / 500);
}

TEST(Clock, mayLackThePerformanceCounter) {
    ScopedMachine machine;
    machine->clock.hasPerformanceCounter = false;
    LARGE_INTEGER value{};
    EXPECT_FALSE(QueryPerformanceCounter(&value));
    EXPECT_FALSE(QueryPerformanceFrequency(&value));
    EXPECT_EQ(value.QuadPart, 0);
}

TEST(Addresses, comeBackWhileTheyAreAmongTheLast) {
    std::vector<int> places(5000);
    const ULONG first = PtrToUlong(places.data());
    EXPECT_EQ(ULongToPtr(first), places.data());
    ULONG last = 0;
    for (int& place : places) {
        last = PtrToUlong(&place);
        ASSERT_EQ(ULongToPtr(last), &place);
    }
    EXPECT_EQ(ULongToPtr(first), nullptr) << "its place was given to a later one";
    EXPECT_EQ(ULongToPtr(last + 1), nullptr);
    EXPECT_EQ(ULongToPtr(last + 16), nullptr) << "not given out yet";
    EXPECT_EQ(PtrToUlong(nullptr), 0u);
    EXPECT_EQ(ULongToPtr(0), nullptr);
}

}  // namespace
