#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "diskio.h"
#include "support/fail_each_machine.h"
#include "support/temp_folder.h"
#include "support/thrown.h"
#include "winlayer/machine.h"

namespace {

using test::Report;
using UTILS::DiskIO;
using UTILS::UtilsString;
using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

const std::string source = "..\\..\\Include\\diskio";
const std::string path = "C:\\a.bin";
constexpr DWORD readWrite = GENERIC_READ | GENERIC_WRITE;
constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE;

template <class Operation>
Report thrownBy(Operation operation) {
    return test::thrownBy<UTILS::DiskIoException>(operation);
}

std::size_t count(const std::vector<std::string>& calls, const std::string& name) {
    return static_cast<std::size_t>(std::count(calls.begin(), calls.end(), name));
}

TEST(DiskIOMachineTest, TellsTheFamiliesApart) {
    struct Row {
        WindowsVersion version;
        DWORD ostype;
        bool nt;
    };
    for (const Row& row : {Row{WindowsVersion::Windows95, 1, false}, Row{WindowsVersion::WindowsMe, 3, false},
                           Row{WindowsVersion::NT351, 4, true}, Row{WindowsVersion::XP, 7, true}}) {
        ScopedMachine machine(row.version);
        writeFile(path, "0123456789");
        DiskIO file(path.c_str(), readWrite, shared, OPEN_EXISTING, 1);
        EXPECT_EQ(file.get_ostype(), row.ostype);
        EXPECT_EQ(file.IsNT(), row.nt);
        EXPECT_EQ(file.get_async_mode(), row.nt) << "overlapped transfers are for NT";
        EXPECT_EQ(machine->handles.openCount(), row.nt ? 2U : 1U);
    }
}

TEST(DiskIOMachineTest, AnOverlappedOpenThatFailsLeavesNothingBehind) {
    ScopedMachine machine;
    machine->gate.failFunction("CreateEventA", ERROR_NOT_ENOUGH_MEMORY, 0, 1);
    DiskIO file;
    EXPECT_EQ(thrownBy([&] { file.Open(path.c_str(), readWrite, shared, CREATE_ALWAYS, 1); }),
              (Report{1, ERROR_NOT_ENOUGH_MEMORY, "DiskIo::Open - CreateEvent handle invalid", source}));
    EXPECT_FALSE(exists(path)) << "the file is not touched without an event";
    const Report missing = thrownBy([&] { file.Open(path.c_str(), readWrite, shared, OPEN_EXISTING, 1); });
    EXPECT_EQ(
        missing.condition,
        "DiskIo::Open - CreateFile handle invalid trying to open file:  C:\\a.bin in Overlapped mode with "
        "access 3221225472, sharing 3, openflag 3");
    EXPECT_FALSE(file.get_async_mode());
    EXPECT_EQ(machine->handles.openCount(), 0U);
}

TEST(DiskIOMachineTest, PartOfItsOwnNameCanBeOpened) {
    ScopedMachine machine;
    writeFile(path, "0123456789");
    DiskIO file(path.c_str());
    file.Open(file.GetFileName().c_str() + 2, readWrite, shared, OPEN_EXISTING, 0);
    EXPECT_EQ(file.GetFileSize(), 10U);
    EXPECT_STREQ(file.GetFileName().c_str(), "\\a.bin");
}

// A virtual device driver leaves memory with its last handle, which on Windows 95/98/Me is asked for by the
// flag that deletes a file: a file of such a name shows whether it was.
TEST(DiskIOMachineTest, AVirtualDeviceDriverIsUnloadedWithItsLastHandle) {
    struct Row {
        const char* name;
        bool driver;
    };
    for (const Row& row : {Row{"C:\\A.VxD", true}, Row{"C:\\a.vxd", true}, Row{"C:\\vwin32", true},
                           Row{"C:\\VWIN32", true}, Row{"C:\\avxd", false}, Row{"C:\\a.vxd.txt", false},
                           Row{"C:\\vwin32.dll", false}, Row{"C:\\xvwin32", false}}) {
        for (const WindowsVersion version : {WindowsVersion::Windows98, WindowsVersion::XP}) {
            ScopedMachine machine(version);
            writeFile(row.name, "x");
            DiskIO(row.name, GENERIC_READ, shared | FILE_SHARE_DELETE, OPEN_EXISTING, 0).Close();
            EXPECT_EQ(exists(row.name), version == WindowsVersion::XP || !row.driver) << row.name;
        }
    }
}

TEST(DiskIOMachineTest, AFailedCloseIsReportedOnce) {
    struct Row {
        int overlapped;
        const char* mode;
    };
    for (const Row& row : {Row{0, "Non Overlapped"}, Row{1, "Overlapped"}}) {
        ScopedMachine machine;
        DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, row.overlapped);
        machine->gate.failFunction("CloseHandle", ERROR_INVALID_HANDLE, 0, 1);
        EXPECT_EQ(thrownBy([&] { file.Close(); }),
                  (Report{4, ERROR_INVALID_HANDLE,
                          std::string("DiskIO::Close() - CloseHandle in ") + row.mode +
                              " mode could not close file C:\\a.bin",
                          source}));
        EXPECT_EQ(file.get_error(), ERROR_INVALID_HANDLE);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_NO_THROW(file.Close());
        file.Open(path.c_str(), readWrite, shared, OPEN_EXISTING, row.overlapped);
        file.Close();
        EXPECT_EQ(machine->handles.openCount(), 0U);
    }
}

TEST(DiskIOMachineTest, DestructionDoesNotThrow) {
    ScopedMachine machine;
    {
        DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, 1);
        DiskIO copy(file);
        machine->gate.failFunction("CloseHandle", ERROR_INVALID_HANDLE);
    }
    EXPECT_EQ(machine->handles.openCount(), 0U);
}

TEST(DiskIOMachineTest, TransfersReportTheSystemsErrorAndMode) {
    for (const int overlapped : {0, 1}) {
        ScopedMachine machine;
        const std::string mode = overlapped != 0 ? "Overlapped" : "Non Overlapped";
        DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, overlapped);
        DiskIO(path.c_str()).Write("0123456789", 10);
        char buffer[10];
        machine->gate.failFunction("ReadFile", ERROR_CRC);
        machine->gate.failFunction("WriteFile", ERROR_DISK_FULL);
        machine->gate.failFunction("SetEndOfFile", ERROR_DISK_FULL);
        machine->gate.failFunction("SetFileAttributesA", ERROR_WRITE_PROTECT);
        EXPECT_EQ(thrownBy([&] { file.Read(buffer, 10); }),
                  (Report{2, ERROR_CRC, "DiskIO::Read - ReadFile in " + mode + " mode read 0 bytes out of 10",
                          source}));
        EXPECT_EQ(thrownBy([&] { file << DWORD{1}; }),
                  (Report{3, ERROR_DISK_FULL,
                          "DiskIO::Write - WriteFile in " + mode + " mode wrote 0 bytes out of 4", source}));
        EXPECT_EQ(file.GetFileSize(), 10U) << "refreshed after a failed write too";
        EXPECT_EQ(thrownBy([&] { file.SetEndOfFile(); }).error, ERROR_DISK_FULL);
        EXPECT_EQ(thrownBy([&] { file.SetFileAttributes(1); }),
                  (Report{1, ERROR_WRITE_PROTECT,
                          "DiskIO::SetFileAttributes - Error setting the file attributes on file:  C:\\a.bin",
                          source}));
        EXPECT_EQ(file.get_error(), ERROR_WRITE_PROTECT);
    }
}

// A file whose overlapped transfers never end must not hold its owner up for longer than twice the limit.
TEST(DiskIOMachineTest, ATransferThatDoesNotEndIsWaitedForTwice) {
    ScopedMachine machine;
    DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, 1);
    machine->gate.startRecording();
    file.Write("abc", 3);
    machine->gate.failFunction("WaitForSingleObject", ERROR_INVALID_HANDLE);
    EXPECT_NO_THROW(file.Close());
    EXPECT_EQ(count(machine->gate.calls(), "WaitForSingleObject"), 2U);
    EXPECT_EQ(count(machine->gate.calls(), "FlushFileBuffers"), 0U);
    EXPECT_EQ(machine->handles.openCount(), 0U);

    // Nothing under way, nothing to wait for: an event nobody signals would cost half a minute.
    file.Open(path.c_str(), readWrite, shared, OPEN_EXISTING, 1);
    machine->gate.startRecording();
    file.Close();
    EXPECT_EQ(count(machine->gate.calls(), "WaitForSingleObject"), 0U);
}

TEST(DiskIOMachineTest, FlushingAnOverlappedFileWaitsForItsTransfer) {
    ScopedMachine machine;
    DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, 1);
    file.Write("abc", 3);
    machine->gate.startRecording();
    file.Flush();
    file.Flush();
    EXPECT_EQ(machine->gate.calls(), std::vector<std::string>{"WaitForSingleObject"});
}

TEST(DiskIOMachineTest, ATransferUnderWayIsNoFailure) {
    ScopedMachine machine;
    DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, 1);
    char buffer[3] = {};
    machine->gate.failFunction("WriteFile", ERROR_IO_PENDING);
    machine->gate.failFunction("ReadFile", ERROR_IO_PENDING);
    EXPECT_NO_THROW(file.Write("abc", 3));
    EXPECT_NO_THROW(file.Read(buffer, 3));
    EXPECT_EQ(file.get_error(), ERROR_IO_PENDING);
    // What goes through a buffer of its own is over on return, and one that moved nothing has failed.
    DWORD number = 0;
    EXPECT_EQ(thrownBy([&] { file >> number; }).condition,
              "DiskIO::Read - ReadFile in Overlapped mode read 0 bytes out of 4");
}

TEST(DiskIOMachineTest, AnUnoverlappedFileIsFlushedBeforeItIsClosed) {
    ScopedMachine machine;
    DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, 0);
    machine->gate.startRecording();
    file.Flush();
    file.Close();
    std::vector<std::string> calls = machine->gate.calls();
    ASSERT_GE(calls.size(), 3U);
    calls.resize(3);
    EXPECT_EQ(calls, (std::vector<std::string>{"FlushFileBuffers", "FlushFileBuffers", "CloseHandle"}));
}

TEST(DiskIOMachineTest, SharersOfAnEventCloseItTogether) {
    ScopedMachine machine;
    {
        DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, 1);
        EXPECT_EQ(machine->handles.openCount(), 2U);
        DiskIO copy(file);
        DiskIO assigned;
        assigned = copy;
        EXPECT_EQ(machine->handles.openCount(), 4U) << "three files, one event";
        file.Close();
        EXPECT_EQ(machine->handles.openCount(), 3U);
        copy << DWORD{7};
        copy.Flush();
    }
    EXPECT_EQ(machine->handles.openCount(), 0U);
}

TEST(DiskIOMachineTest, AHandleThatCannotBeSharedLeavesTheTargetAlone) {
    ScopedMachine machine;
    DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, 0);
    writeFile("C:\\b.bin", "b");
    DiskIO target("C:\\b.bin");
    machine->gate.failFunction("DuplicateHandle", ERROR_ACCESS_DENIED);
    const Report report = thrownBy([&] { target = file; });
    EXPECT_EQ(report.type, 1U);
    EXPECT_EQ(report.error, ERROR_ACCESS_DENIED);
    EXPECT_STREQ(target.GetFileName().c_str(), "C:\\b.bin");
    EXPECT_EQ(thrownBy([&] { DiskIO copy(file); }).type, 1U);
    EXPECT_EQ(machine->handles.openCount(), 2U);
}

TEST(DiskIOMachineTest, NoFailingCallLeavesAHandleOpen) {
    for (const WindowsVersion version : {WindowsVersion::XP, WindowsVersion::Windows98}) {
        for (const int overlapped : {0, 1}) {
            test::failEachCall(
                version, ERROR_GEN_FAILURE, [] { writeFile("C:\\b.bin", "12345678"); },
                [&] {
                    try {
                        DiskIO file(path.c_str(), readWrite, shared, CREATE_ALWAYS, overlapped);
                        DiskIO other("C:\\b.bin");
                        file << DWORD{1};
                        DiskIO copy(file);
                        other = copy;
                        LARGE_INTEGER start{};
                        copy.SetFilePointer(start, FILE_BEGIN);
                        DWORD number = 0;
                        copy >> number;
                        copy.Open("C:\\b.bin", GENERIC_READ, shared, OPEN_EXISTING, overlapped);
                        file.Flush();
                        file.Close();
                        other.Close();
                        copy.Close();
                        file.Delete(path.c_str(), 1);
                    } catch (const UTILS::DiskIoException& failure) {
                        EXPECT_EQ(failure.m_error_number, ERROR_GEN_FAILURE) << failure.what();
                    }
                },
                [](bool) {});
        }
    }
}

// ---- Devices

// A drive whose device answers every command as it is told to.
class AnsweringDrive : public test::MemoryDrive {
public:
    DWORD error = 0;
    std::vector<unsigned char> reply;
    DWORD received = 0;                // the command code
    std::vector<unsigned char> input;  // and what came with it

    DWORD openDevice(const winlayer::OpenRequest&, std::unique_ptr<winlayer::OpenFile>& device) override {
        device = std::make_unique<Device>(*this);
        return 0;
    }

private:
    class Device : public winlayer::OpenFile {
    public:
        explicit Device(AnsweringDrive& drive) : drive_(drive) {}
        winlayer::Transfer read(std::uint64_t, std::span<std::byte>) override { return {}; }
        winlayer::Transfer write(std::uint64_t, std::span<const std::byte>) override { return {}; }
        DWORD flush() override { return 0; }
        DWORD size(std::uint64_t&) override { return ERROR_INVALID_FUNCTION; }
        DWORD resize(std::uint64_t) override { return ERROR_INVALID_FUNCTION; }
        DWORD control(DWORD code, std::span<const std::byte> in, std::span<std::byte> out,
                      DWORD& returned) override {
            const auto* const bytes = reinterpret_cast<const unsigned char*>(in.data());
            drive_.received = code;
            drive_.input.assign(bytes, bytes + in.size());
            const std::size_t size = std::min(out.size(), drive_.reply.size());
            std::copy_n(std::as_bytes(std::span(drive_.reply)).begin(), size, out.begin());
            returned = static_cast<DWORD>(size);
            return drive_.error;
        }

    private:
        AnsweringDrive& drive_;
    };
};

TEST(DiskIOMachineTest, AFailedCommandTakesItsErrorFromTheReply) {
    std::vector<unsigned char> registers(28, 0x11);
    registers[12] = 0x34;
    registers[13] = 0x12;
    std::vector<unsigned char> track(518, 0x22);
    track.back() = 0x77;
    struct Row {
        DWORD code;
        std::vector<unsigned char> reply;
        DWORD error;
    };
    for (const Row& row :
         {Row{1, registers, 0x1234}, Row{2, registers, 0x1234}, Row{4, registers, 0x12}, Row{12, track, 0x77},
          Row{4, std::vector<unsigned char>(27, 1), ERROR_CRC}, Row{13, {}, ERROR_CRC}}) {
        SCOPED_TRACE(row.code);
        const auto drive = std::make_shared<AnsweringDrive>();
        drive->error = ERROR_CRC;
        drive->reply = row.reply;
        ScopedMachine machine;
        machine->drives.mount('A', drive, DRIVE_REMOVABLE);
        DiskIO device("\\\\.\\A:");
        std::vector<unsigned char> reply(row.reply.size());
        unsigned char request[3] = {1, 2, 3};
        EXPECT_EQ(thrownBy([&] {
                      device.DeviceControl(row.code, request, 3, reply.data(),
                                           static_cast<DWORD>(reply.size()));
                  }),
                  (Report{0, row.error,
                          "DiskIO::DeviceControl - Cannot Execute Device Cmd " + std::to_string(row.code),
                          source}));
        EXPECT_EQ(drive->received, row.code);
        EXPECT_EQ(drive->input, (std::vector<unsigned char>{1, 2, 3}));
        EXPECT_TRUE(device.IsOpen());
    }
}

TEST(DiskIOMachineTest, ACommandCountsTheBytesThatCameBack) {
    const auto drive = std::make_shared<AnsweringDrive>();
    drive->reply = {9, 8, 7};
    ScopedMachine machine;
    machine->drives.mount('A', drive, DRIVE_REMOVABLE);
    DiskIO device("\\\\.\\A:");
    unsigned char reply[10] = {};
    device.DeviceControl(0x70000, nullptr, 0, reply, sizeof reply);
    EXPECT_EQ(device.GetBytesRead(), 3U);
    EXPECT_EQ(reply[2], 7);
    EXPECT_EQ(device.GetFileSize(), 0U) << "a device tells no size";
}

// Sees what the sector and BIOS services send, and answers for the device.
class Recorder : public DiskIO {
public:
    void DeviceControl(DWORD command, void* const in, DWORD inSize, void* out, DWORD outSize) override {
        code = command;
        input.assign(static_cast<unsigned char*>(in), static_cast<unsigned char*>(in) + inSize);
        outputSize = outSize;
        std::copy_n(answer.begin(), std::min<std::size_t>(answer.size(), outSize),
                    static_cast<unsigned char*>(out));
    }
    DIOC_REGISTERS registers() const {
        DIOC_REGISTERS block{};
        if (input.size() == sizeof block) std::memcpy(&block, input.data(), sizeof block);
        return block;
    }

    DWORD code = 0;
    std::vector<unsigned char> input;
    DWORD outputSize = 0;
    std::vector<unsigned char> answer;
};

TEST(DiskIOMachineTest, SectorsGoThroughTheAbsoluteDiskServices) {
    ScopedMachine machine(WindowsVersion::Windows98);
    Recorder device;
    _ABSREADWRITE packet{};
    packet.sectorCount = 1;
    device.DeviceWrite(packet, 0);
    EXPECT_EQ(device.code, 3U);
    EXPECT_EQ(device.outputSize, 28U);
    const DIOC_REGISTERS in = device.registers();
    EXPECT_EQ(in.reg_EAX, 0U);
    EXPECT_EQ(in.reg_ECX, 0xFFFFU);
    EXPECT_EQ(in.reg_Flags, 1U);
    EXPECT_EQ(ULongToPtr(in.reg_EBX), &packet);
    device.DeviceRead(packet, 25);
    EXPECT_EQ(device.code, 2U);
    EXPECT_EQ(device.registers().reg_EAX, 25U);
}

TEST(DiskIOMachineTest, AFailedSectorServiceGivesItsOwnError) {
    ScopedMachine machine(WindowsVersion::WindowsMe);
    Recorder device;
    DIOC_REGISTERS failed{};
    failed.reg_EAX = 0x00090207;
    failed.reg_Flags = 0x43;
    device.answer.resize(sizeof failed);
    std::memcpy(device.answer.data(), &failed, sizeof failed);
    _ABSREADWRITE packet{};
    packet.startSector = 4000000000U;
    packet.sectorCount = 65535;
    EXPECT_EQ(thrownBy([&] { device.DeviceRead(packet, 1); }),
              (Report{11, 0x0207,
                      "DiskIO::DeviceRead - VWIN32_DIOC_DOS_INT25, Disk:  1; sector:  4000000000; sectors to "
                      "read:  65535",
                      source}));
    EXPECT_EQ(
        thrownBy([&] { device.DeviceWrite(packet, 0); }),
        (Report{11, 0x0207,
                "DiskIO::DeviceWrite - VWIN32_DIOC_DOS_INT26, Disk:  0; sector:  4000000000; sectors to "
                "write:  65535",
                source}));
}

TEST(DiskIOMachineTest, ATrackFormatPacksItsRequest) {
    ScopedMachine machine(WindowsVersion::Windows95);
    Recorder device;
    _SECTOR_ID ids[18] = {};
    device.BiosTrackFormat(ids, 0x101, 0x24F, 0x301);
    EXPECT_EQ(device.code, 12U);
    EXPECT_EQ(device.outputSize, 518U);
    ASSERT_EQ(device.input.size(), 11U);
    EXPECT_EQ(std::vector<unsigned char>(device.input.begin(), device.input.begin() + 3),
              (std::vector<unsigned char>{0x01, 0x4F, 0x01}));
    DWORD address = 0;
    std::memcpy(&address, device.input.data() + 3, 4);
    EXPECT_EQ(ULongToPtr(address), ids);
    EXPECT_EQ(std::vector<unsigned char>(device.input.begin() + 7, device.input.end()),
              (std::vector<unsigned char>{18, 0, 0, 0}));

    _BIOSREADWRITEPARAMIN in{1, 2, 3, 4, 5, 6};
    _BIOSREADWRITEPARAMIN out{};
    device.DeviceRead(in, out);
    EXPECT_EQ(device.code, 13U);
    EXPECT_EQ(device.input, (std::vector<unsigned char>{1, 2, 3, 4, 5, 6, 0, 0, 0}));
    EXPECT_EQ(device.outputSize, 9U);
    device.DeviceWrite(in, out);
    EXPECT_EQ(device.code, 14U);
}

}  // namespace
