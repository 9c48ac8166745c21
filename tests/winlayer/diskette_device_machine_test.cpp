// A diskette drive as programs reach it: \\.\A: on Windows NT, \\.\VWIN32 on Windows 95, 98 and Me, and the
// states that drive and medium can be in.
#include <gtest/gtest.h>
#include <windows.h>
#include <winioctl.h>

#include <algorithm>
#include <array>

#include "support/diskette_files.h"
#include "support/diskette_machine.h"
#include "support/expect_fails.h"
#include "support/open_path.h"

using winlayer::DisketteState;
using winlayer::WindowsVersion;

namespace {

using Bytes = std::vector<std::byte>;

class DeviceHandle {
public:
    explicit DeviceHandle(const char* name, DWORD access = GENERIC_READ | GENERIC_WRITE)
        : handle_(openPath(name, access)), error(errorOf(handle_)) {}
    ~DeviceHandle() { CloseHandle(handle_); }
    DeviceHandle(const DeviceHandle&) = delete;
    DeviceHandle& operator=(const DeviceHandle&) = delete;

    DWORD control(DWORD code, void* in, DWORD inSize, void* out, DWORD outSize) {
        return errorOf(DeviceIoControl(handle_, code, in, inSize, out, outSize, &count, nullptr));
    }
    DWORD read(DWORD offset, Bytes& buffer) {
        SetFilePointer(handle_, static_cast<LONG>(offset), nullptr, FILE_BEGIN);
        return errorOf(ReadFile(handle_, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr));
    }
    DWORD write(DWORD offset, const Bytes& data) {
        SetFilePointer(handle_, static_cast<LONG>(offset), nullptr, FILE_BEGIN);
        return errorOf(WriteFile(handle_, data.data(), static_cast<DWORD>(data.size()), &count, nullptr));
    }

private:
    HANDLE handle_;

public:
    const DWORD error;
    DWORD count = 0;
};

struct Registers {
    DWORD ebx, edx, ecx, eax, edi, esi, flags;
};

// One MS-DOS service; what the command itself returned is in `command`.
struct Service {
    explicit Service(DWORD code, Registers in) {
        DeviceHandle device("\\\\.\\VWIN32");
        EXPECT_EQ(device.error, NO_ERROR);
        in.flags |= 1;
        command = device.control(code, &in, sizeof in, &out, sizeof out);
    }
    bool carry() const { return (out.flags & 1) != 0; }
    DWORD ax() const { return out.eax & 0xFFFF; }

    DWORD command = 0;
    Registers out{};
};

#pragma pack(push, 1)
struct Packet {
    DWORD first;
    WORD count;
    DWORD buffer;
};
#pragma pack(pop)

Service absolute(bool writing, DWORD first, WORD count, void* buffer, DWORD drive = 0) {
    Packet packet{first, count, PtrToUlong(buffer)};
    return Service(writing ? 3 : 2, {PtrToUlong(&packet), 0, 0xFFFF, drive, 0, 0, 0});
}

Service bios(WORD ax, DWORD cylinder, DWORD head, DWORD sector, void* buffer) {
    const DWORD cx = (cylinder & 0xFF) << 8 | (cylinder >> 8) << 6 | sector;
    return Service(4, {PtrToUlong(buffer), head << 8, cx, ax, 0, 0, 0});
}

Bytes sectorOf(DisketteMachine& diskette, DWORD sector) {
    const auto bytes = diskette.image().subspan(std::size_t{sector} * 512, 512);
    return {bytes.begin(), bytes.end()};
}

DisketteState stateNamed(const std::string& text) {
    DisketteState state;
    EXPECT_TRUE(winlayer::parseState(text, state)) << text;
    return state;
}

}  // namespace

TEST(DisketteDevice, TheMediaTypesAreThoseOfTheDrive) {
    constexpr DWORD media = IOCTL_DISK_GET_MEDIA_TYPES;
    constexpr DWORD geometry = IOCTL_DISK_GET_DRIVE_GEOMETRY;
    const std::array<DWORD, 5> high{80, 2, 18, 512, F3_1Pt44_512};
    const std::array<DWORD, 5> low{80, 2, 9, 512, F3_720_512};
    std::array<DISK_GEOMETRY, 512> types{};
    const auto shape = [&](std::size_t n) {
        const DISK_GEOMETRY& g = types[n];
        return std::array<DWORD, 5>{static_cast<DWORD>(g.Cylinders.QuadPart), g.TracksPerCylinder,
                                    g.SectorsPerTrack, g.BytesPerSector, static_cast<DWORD>(g.MediaType)};
    };
    const auto ask = [&](DeviceHandle& device, DWORD code, DWORD size) {
        return device.control(code, nullptr, 0, types.data(), size);
    };
    DisketteMachine diskette;
    DeviceHandle device("\\\\.\\A:");
    ASSERT_EQ(ask(device, media, 0x3000), NO_ERROR);
    ASSERT_EQ(device.count, 48U);
    EXPECT_EQ(shape(0), high);
    EXPECT_EQ(shape(1), low);
    EXPECT_EQ(ask(device, media, 40), ERROR_MORE_DATA);
    EXPECT_EQ(device.count, 24U);
    EXPECT_EQ(ask(device, media, 23), ERROR_INSUFFICIENT_BUFFER);
    types[0] = {};
    ASSERT_EQ(ask(device, geometry, 24), NO_ERROR);
    EXPECT_EQ(shape(0), high);
    EXPECT_EQ(ask(device, geometry, 23), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(ask(device, 0x70004, 24), ERROR_INVALID_FUNCTION);

    DisketteMachine small(WindowsVersion::Windows2000, winlayer::sectors720);
    DeviceHandle smallMedium("\\\\.\\A:");
    ASSERT_EQ(ask(smallMedium, geometry, 24), NO_ERROR);
    EXPECT_EQ(shape(0), low);
    small.drive().setState(stateNamed("720k"));
    types[0] = {};
    ASSERT_EQ(ask(smallMedium, media, 0x3000), NO_ERROR);
    EXPECT_EQ(smallMedium.count, 24U);
    EXPECT_EQ(shape(0), low);
}

TEST(DisketteDevice, TransfersAreWholeSectorsUpToTheEnd) {
    DisketteMachine diskette;
    DeviceHandle device("\\\\.\\A:");
    Bytes two(1024, std::byte{7});
    const DWORD last = 2879 * 512;
    EXPECT_EQ(device.write(last - 512, two), NO_ERROR);
    EXPECT_EQ(sectorOf(diskette, 2879), Bytes(512, std::byte{7}));
    EXPECT_EQ(device.write(last, Bytes(1024)), ERROR_SECTOR_NOT_FOUND);
    EXPECT_EQ(device.count, 0U);
    EXPECT_EQ(sectorOf(diskette, 2879), Bytes(512, std::byte{7})) << "a refused write moves nothing";
    EXPECT_EQ(device.read(last, two), NO_ERROR);
    EXPECT_EQ(device.count, 512U);
    EXPECT_EQ(device.read(last + 512, two), NO_ERROR);
    EXPECT_EQ(device.count, 0U);
    EXPECT_EQ(device.read(100, two), ERROR_INVALID_PARAMETER);
    Bytes odd(700);
    EXPECT_EQ(device.read(0, odd), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(device.write(0, odd), ERROR_INVALID_PARAMETER);
    DeviceHandle reader("\\\\.\\A:", GENERIC_READ);
    EXPECT_EQ(reader.write(0, two), ERROR_ACCESS_DENIED);
}

// The disk maker writes sector 0 through the device in the midst of work with files.
TEST(DisketteDevice, FilesAndDeviceSeeTheSameBytes) {
    DisketteMachine diskette;
    DeviceHandle device("\\\\.\\A:");
    ASSERT_EQ(writeWhole(diskette.drive(), "F", "before"), NO_ERROR);
    Bytes data = sectorOf(diskette, 33);
    EXPECT_EQ(static_cast<char>(data[0]), 'b');
    data[0] = std::byte{'B'};
    ASSERT_EQ(device.write(33 * 512, data), NO_ERROR);
    EXPECT_EQ(contentOf(diskette.drive(), "F"), "Before");

    const TestFile open = openFile(diskette.drive(), "F", OPEN_EXISTING);
    Bytes boot = sectorOf(diskette, 0);
    boot[0x27] = std::byte{0xAB};  // the serial number
    ASSERT_EQ(device.write(0, boot), NO_ERROR);
    winlayer::VolumeFacts volume;
    ASSERT_EQ(diskette.drive().volume(volume), NO_ERROR);
    EXPECT_EQ(volume.serial, (DisketteMachine::serial & 0xFFFFFF00) | 0xAB);
    EXPECT_EQ(open->write(0, bytesOf("x")).error, NO_ERROR) << "the volume is still the same";

    Bytes root = sectorOf(diskette, 19);
    root[0] = std::byte{'G'};
    ASSERT_EQ(device.write(19 * 512, root), NO_ERROR);
    EXPECT_EQ(namesIn(diskette.drive(), ""), std::vector<std::string>{"G"});

    ASSERT_EQ(device.write(0, Bytes(512)), NO_ERROR);
    EXPECT_EQ(namesIn(diskette.drive(), ""), std::vector<std::string>{"error 1005"});
    EXPECT_EQ(open->write(0, bytesOf("x")).error, ERROR_FILE_INVALID);
    ASSERT_EQ(device.write(0, boot), NO_ERROR);
    EXPECT_EQ(namesIn(diskette.drive(), ""), std::vector<std::string>{"G"});
}

// Each state and what each way to the diskette says about it: opening the device, reading and writing sector
// 40, writing the boot sector through MS-DOS, and the file calls.
TEST(DisketteDevice, EachStateFailsWhatItShould) {
    struct Row {
        const char* state;
        DWORD open, readRaw, writeRaw;
        WORD dosRead, dosWrite, biosRead;
        DWORD list, openForWriting, create, label;
    };
    const DWORD unknown = ERROR_UNRECOGNIZED_MEDIA;
    const Row rows[] = {
        {"no-medium", 21, 0, 0, 0x8002, 0x8002, 0x8000, 21, 21, 21, 21},
        {"unformatted", unknown, 0, 0, 0x0207, 0x0207, 0x0200, unknown, unknown, unknown, unknown},
        {"720k", unknown, 0, 0, 0x0207, 0x0207, 0x0200, unknown, unknown, unknown, unknown},
        {"write-protected", 0, 0, 19, 0, 0x0300, 0, 0, 19, 19, 19},
        {"bad-sector=40", 0, 23, 23, 0x1004, 0x1004, 0x1000, 0, 0, 0, 0},
        {"bad-write=40", 0, 0, 27, 0, 0x0408, 0, 0, 0, 0, 0},
        {"lost-write=40", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
        {"bad-sector=0", 0, 0, 0, 0, 0, 0, 23, 23, 23, 23},
        {"bad-sector=19", 0, 0, 0, 0, 0, 0, 23, 23, 23, 23},
        {"bad-write=19", 0, 0, 0, 0, 0, 0, 0, 0, 27, 27},
        {"bad-write=10", 0, 0, 0, 0, 0, 0, 0, 0, 27, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.state);
        DisketteMachine diskette;
        ASSERT_EQ(writeWhole(diskette.drive(), "F", "f"), NO_ERROR);
        const Bytes before = sectorOf(diskette, 40);
        diskette.drive().setState(stateNamed(row.state));
        Bytes buffer(512, std::byte{9});
        {
            DeviceHandle device("\\\\.\\A:");
            EXPECT_EQ(device.error, row.open);
            if (device.error == NO_ERROR) {
                EXPECT_EQ(device.write(40 * 512, buffer), row.writeRaw);
                EXPECT_EQ(device.read(40 * 512, buffer), row.readRaw);
            }
        }
        diskette.machine().version = WindowsVersion::Windows98;
        EXPECT_EQ(absolute(false, 40, 1, buffer.data()).ax(), row.dosRead);
        EXPECT_EQ(absolute(true, 40, 1, buffer.data()).ax(), row.dosWrite);
        EXPECT_EQ(bios(0x0201, 1, 0, 5, buffer.data()).ax(), row.biosRead == 0 ? 1 : row.biosRead);
        if (row.dosWrite != 0 || std::string(row.state) == "lost-write=40") {
            EXPECT_EQ(sectorOf(diskette, 40), before);
        }
        diskette.drive().settle();
        EXPECT_EQ(namesIn(diskette.drive(), "")[0],
                  row.list == 0 ? "F" : "error " + std::to_string(row.list));
        EXPECT_EQ(openFile(diskette.drive(), "F", OPEN_EXISTING).error, row.openForWriting);
        if (std::string(row.state) == "write-protected") {
            EXPECT_EQ(diskette.drive().setAttributes("F", FILE_ATTRIBUTE_ARCHIVE), 19U)
                << "nothing would change";
            EXPECT_EQ(diskette.drive().removeFile("F"), 19U);
        }
        EXPECT_EQ(diskette.drive().createDirectory("D"), row.create);
        EXPECT_EQ(diskette.drive().setLabel("LABEL"), row.label);
    }
}

TEST(DisketteDevice, TheStatesAreKnownByName) {
    for (const std::string_view name : winlayer::stateNames()) {
        DisketteState state;
        std::string text(name);
        if (text.back() == 'N') {
            text.back() = '7';
        }
        EXPECT_TRUE(winlayer::parseState(text, state)) << text;
    }
    DisketteState state;
    for (const char* const text : {"", "bad-sector", "bad-sector=", "bad-sector=2880", "bad-write=-1",
                                   "bad-write=1x", "lost-write= 1", "no-Medium", "bad-sector=99999999999"}) {
        EXPECT_FALSE(winlayer::parseState(text, state)) << text;
    }
    EXPECT_TRUE(winlayer::parseState("bad-write=2879", state));
    EXPECT_TRUE(winlayer::parseState("write-protected", state));
    EXPECT_TRUE(state.writeProtected && state.faults.size() == 1) << "states add up";
}

// A sector that fails once is what the second try is for.
TEST(DisketteDevice, AFaultLastsAsOftenAsItIsTold) {
    DisketteMachine diskette;
    DisketteState state;
    state.faults.push_back({5, winlayer::SectorFault::Kind::ReadFails, ERROR_SECTOR_NOT_FOUND, 1});
    diskette.drive().setState(state);
    Bytes track(18 * 512);
    EXPECT_EQ(diskette.drive().readSectors(0, track), ERROR_SECTOR_NOT_FOUND);
    EXPECT_EQ(diskette.drive().readSectors(0, track), NO_ERROR);
}

TEST(Vwin32, GivesTheParametersOfTheDrive) {
    DisketteMachine diskette(WindowsVersion::Windows98);
    diskette.drive().setState(stateNamed("no-medium"));  // asking for the drive's own needs no diskette
    std::array<BYTE, 40> block{};
    block.fill(0xEE);
    block[0] = 0;
    const auto ask = [&](DWORD drive, DWORD minor = 0x60) {
        return Service(1, {drive, PtrToUlong(block.data()), 0x0800 | minor, 0x440D, 0, 0, 0});
    };
    const Service asked = ask(1);
    EXPECT_EQ(asked.command, NO_ERROR);
    EXPECT_FALSE(asked.carry());
    const std::array<BYTE, 32> expected{0,  7, 2, 0, 80, 0, 0,  // the drive
                                        0,  2, 1, 1, 0,  2, 224, 0, 0x40, 0x0B, 0xF0, 9,
                                        0,  // its parameter block
                                        18, 0, 2, 0, 0,  0, 0,   0, 0,    0,    0,    0};
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), block.begin()));
    EXPECT_EQ(block[32], 0xEE) << "nothing behind the block is touched";

    block[0] = 1;  // of the medium
    EXPECT_EQ(ask(1).ax(), 0x15U);
    diskette.drive().setState(stateNamed("720k"));
    block[0] = 0;
    EXPECT_FALSE(ask(1).carry());
    EXPECT_EQ(block[1], 2);
    EXPECT_EQ(block[20], 9);
    EXPECT_EQ(ask(2).ax(), 0x0FU);
    EXPECT_TRUE(ask(2).carry());
    EXPECT_EQ(ask(0).ax(), 0x0FU);
    EXPECT_EQ(ask(1, 0x61).ax(), 1U);
}

TEST(Vwin32, ReadsAndWritesSectors) {
    DisketteMachine diskette(WindowsVersion::WindowsMe);
    Bytes data(1024, std::byte{0x5A});
    EXPECT_FALSE(absolute(true, 2878, 2, data.data()).carry());
    EXPECT_EQ(sectorOf(diskette, 2879), Bytes(512, std::byte{0x5A}));
    EXPECT_EQ(absolute(true, 2879, 2, data.data()).ax(), 0x0408U);
    EXPECT_EQ(absolute(true, 0xFFFFFFFF, 1, data.data()).ax(), 0x0408U);
    EXPECT_EQ(absolute(false, 0, 1, data.data(), 1).ax(), 0x0101U);
    EXPECT_FALSE(absolute(false, 0, 1, data.data()).carry());
    EXPECT_EQ(Bytes(data.begin(), data.begin() + 512), sectorOf(diskette, 0));

    // Cylinder 79, head 1, sector 18 is the last one.
    EXPECT_EQ(bios(0x0301, 79, 1, 18, data.data()).ax(), 1U);
    EXPECT_EQ(sectorOf(diskette, 2879), sectorOf(diskette, 0));
    for (const Service& beyond : {bios(0x0201, 80, 0, 1, data.data()), bios(0x0201, 0, 2, 1, data.data()),
                                  bios(0x0201, 0, 0, 0, data.data()), bios(0x0202, 0, 0, 18, data.data())}) {
        EXPECT_TRUE(beyond.carry());
        EXPECT_EQ(beyond.ax(), 0x0400U);
    }
    EXPECT_FALSE(bios(0x0000, 0, 0, 0, nullptr).carry());
    const Service parameters = bios(0x0800, 0, 0, 0, nullptr);
    EXPECT_EQ(parameters.out.ecx & 0xFFFF, 0x4F12U);
    EXPECT_EQ(parameters.out.edx & 0xFFFF, 0x0101U);
    EXPECT_EQ(parameters.out.ebx & 0xFF, 4U);
    EXPECT_EQ(bios(0x0501, 0, 0, 1, data.data()).ax(), 0x0100U);
}

// What the service cannot even try fails the command, and the registers stay as they were.
TEST(Vwin32, RefusesWhatIsNoService) {
    DisketteMachine diskette(WindowsVersion::Windows95);
    EXPECT_NE(DeviceHandle("\\\\.\\A:").error, NO_ERROR);
    DeviceHandle device("\\\\.\\VWIN32");
    Registers in{};
    Registers out{1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(device.control(5, &in, 28, &out, 28), ERROR_INVALID_FUNCTION);
    EXPECT_EQ(device.control(2, &in, 27, &out, 28), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(device.control(2, &in, 28, &out, 20), ERROR_INVALID_PARAMETER);
    in = {0x12345678, 0, 0xFFFF, 0, 0, 0, 1};
    EXPECT_EQ(device.control(3, &in, 28, &out, 28), ERROR_INVALID_PARAMETER) << "an address from nowhere";
    EXPECT_EQ(out.edx, 2U);
    in.ecx = 1;
    EXPECT_EQ(device.control(3, &in, 28, &out, 28), NO_ERROR);
    EXPECT_EQ(out.eax & 0xFFFF, 0x0207U) << "only packets";
    diskette.machine().version = WindowsVersion::XP;
    EXPECT_NE(DeviceHandle("\\\\.\\VWIN32").error, NO_ERROR);
}
