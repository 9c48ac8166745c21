// Diskettes in the drives of Windows itself.
#include "tools/emergency_disk/diskette.h"

#include <winioctl.h>

#include <algorithm>
#include <array>
#include <optional>

#include "boot_sector.h"
#include "diskio.h"
#include "newwindows/known_version.h"
#include "raw_diskette.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"
#include "tools/emergency_disk/command_line.h"
#include "tools/emergency_disk/problems.h"

namespace tools::emergency_disk {

namespace {

constexpr const char* layerOnly =
    "this is an option of the layer that plays Windows and its diskettes on other systems; here a real drive "
    "is used, as in --device A:";

// Suppresses Windows' message boxes that ask for a diskette, during its lifetime.
class NoBoxes {
public:
    NoBoxes() : before_(SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX)) {}
    ~NoBoxes() { SetErrorMode(before_); }
    NoBoxes(const NoBoxes&) = delete;
    NoBoxes& operator=(const NoBoxes&) = delete;

private:
    UINT before_;
};

// MS-DOS, which reads the sectors on Windows other than NT, numbers from 0 the errors that Windows numbers
// from ERROR_WRITE_PROTECT. For an unformatted diskette it only reports an unknown medium.
DWORD fromDos(DWORD error) {
    constexpr BYTE unknownMedium = 7;
    const BYTE reason = LOBYTE(error);
    return reason == unknownMedium ? ERROR_UNRECOGNIZED_MEDIA : ERROR_WRITE_PROTECT + reason;
}

// Returns a file or device failure that `work` throws as its error code.
template <class Work>
DWORD errorOf(Work work) {
    try {
        work();
        return NO_ERROR;
    } catch (const UTILS::DiskIoException& failure) {
        if (failure.m_type == UTILS::DISKIO_SECTOR) return fromDos(failure.m_error_number);
        return failure.m_error_number != 0 ? failure.m_error_number : ERROR_READ_FAULT;
    }
}

unsigned field(const std::array<unsigned char, boot_sector::size>& sector, std::size_t at) {
    return sector[at] | sector[at + 1] << 8;
}

// A drive letter: files through Windows, sectors by the access that this Windows version offers.
class DriveView : public DisketteView {
public:
    explicit DriveView(char letter) : letter_(letter) {}

    bool isNT() const { return device_.IsNT(); }
    std::string name() const { return {letter_, ':'}; }
    std::string root() const { return name() + '\\'; }

    // Makes Windows read the diskette again: 95/98/Me by dropping their cache, NT by dismounting the volume,
    // which only works if it is not otherwise in use.
    DWORD settle() override {
        const NoBoxes quiet;
        device_.CloseQuietly();
        if (const DWORD error = errorOf([&] { device_.OpenDrive(letter_); })) return error;
        device_.DropCache();
        if (isNT()) dismount();
        device_.CloseQuietly();
        return NO_ERROR;
    }

    DWORD readSectors(DWORD first, std::span<std::byte> buffer) override {
        const NoBoxes quiet;
        return errorOf([&] {
            if (!device_.IsOpen()) device_.OpenDrive(letter_);
            device_.ReadSectors(first, buffer);
        });
    }

    DWORD bootSector(std::array<unsigned char, boot_sector::size>& sector) {
        return readSectors(0, std::as_writable_bytes(std::span(sector)));
    }

    DWORD fats(Fats& fats) override {
        std::array<unsigned char, boot_sector::size> sector{};
        if (const DWORD error = bootSector(sector)) return error;
        fats = {field(sector, boot_sector::reservedSectorsAt), sector[boot_sector::fatCountAt],
                field(sector, boot_sector::sectorsPerFatAt)};
        const bool fit = fats.first > 0 && fats.count > 0 && fats.sectorsEach > 0 &&
                         fats.first + fats.count * fats.sectorsEach < boot_sector::totalSectors;
        return fit ? NO_ERROR : ERROR_UNRECOGNIZED_MEDIA;
    }

    DWORD label(std::string& label) override {
        std::string system;
        return volume(label, system);
    }

    DWORD volume(std::string& label, std::string& fileSystem) const {
        const NoBoxes quiet;
        char labelText[MAX_PATH + 1]{};
        char systemText[MAX_PATH + 1]{};
        if (!GetVolumeInformationA(root().c_str(), labelText, MAX_PATH, nullptr, nullptr, nullptr, systemText,
                                   MAX_PATH))
            return GetLastError();
        label = labelText;
        fileSystem = systemText;
        return NO_ERROR;
    }

    DWORD file(const std::string& name, File& file) override {
        const NoBoxes quiet;
        WIN32_FIND_DATAA facts{};
        const HANDLE search = FindFirstFileA((root() + name).c_str(), &facts);
        if (search == INVALID_HANDLE_VALUE) return GetLastError();
        FindClose(search);
        file = {facts.dwFileAttributes, std::uint64_t{facts.nFileSizeHigh} << 32 | facts.nFileSizeLow};
        return NO_ERROR;
    }

    DWORD readFile(const std::string& name, std::vector<unsigned char>& contents) override {
        const NoBoxes quiet;
        return errorOf([&] {
            UTILS::DiskIO file((root() + name).c_str(), GENERIC_READ, FILE_SHARE_READ);
            file.Read(contents.data(), static_cast<DWORD>(contents.size()));
            contents.resize(file.GetBytesRead());
        });
    }

    // The number of sectors of the medium; 0 where this Windows version does not report it.
    DWORD sectors(DWORD& count) {
        const NoBoxes quiet;
        count = 0;
        if (!isNT()) return NO_ERROR;
        DISK_GEOMETRY geometry{};
        const DWORD error = errorOf([&] {
            if (!device_.IsOpen()) device_.OpenDrive(letter_);
            device_.DeviceControl(IOCTL_DISK_GET_DRIVE_GEOMETRY, nullptr, 0, &geometry, sizeof geometry);
        });
        count = static_cast<DWORD>(geometry.Cylinders.QuadPart) * geometry.TracksPerCylinder *
                geometry.SectorsPerTrack;
        return error;
    }

    // ERROR_WRITE_PROTECT for a protected diskette. Only NT reports that without a write.
    DWORD writable() {
        if (!isNT()) return NO_ERROR;
        const NoBoxes quiet;
        return errorOf([&] {
            if (!device_.IsOpen()) device_.OpenDrive(letter_);
            device_.DeviceControl(IOCTL_DISK_IS_WRITABLE, nullptr, 0, nullptr, 0);
        });
    }

private:
    void dismount() {
        for (const DWORD step : {FSCTL_LOCK_VOLUME, FSCTL_DISMOUNT_VOLUME, FSCTL_UNLOCK_VOLUME}) {
            if (errorOf([&] { device_.DeviceControl(step, nullptr, 0, nullptr, 0); }) != NO_ERROR) break;
        }
    }

    char letter_;
    RawDiskette device_;
};

char letterOf(const Target& target) {
    const std::string& name = target.device.string();
    const char letter = static_cast<char>(name.empty() ? 0 : name[0] & ~0x20);
    const bool drive = letter >= 'A' && letter <= 'Z' &&
                       (name.size() == 1 || name.substr(1) == ":" || name.substr(1) == ":\\");
    if (!drive) throw Problem(ExitCode::usage, "'" + name + "' is no drive; name one as in --device A:");
    return letter;
}

Problem driveProblem(const DriveView& drive, DWORD error) {
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
        return {ExitCode::noDiskette, "there is no drive " + drive.name()};
    }
    const Problem cause = transferProblem(error, 0);
    return {cause.code(), drive.name() + " cannot be read: " + cause.what()};
}

// The library would look for Windows 95's driver. The program has already restarted itself on such a version,
// without success.
void refuseUnknownWindows() {
    if (newwindows::runsOnKnownWindows()) return;
    throw Problem(
        ExitCode::noDiskette,
        "this Windows is newer than XP, and no diskette drive is found on it. Set the compatibility "
        "mode for Windows XP on the page Compatibility of the properties of emergency-disk.exe and "
        "start it again; where that does not help, use a computer with Windows 98 to XP");
}

// Windows 95/98/Me reports a medium's size only after its drive type has been queried; there the diskette
// drives are A: and B:.
void refuseOtherDrives(DriveView& drive) {
    refuseUnknownWindows();
    const UINT type = GetDriveTypeA(drive.root().c_str());
    if (type == DRIVE_NO_ROOT_DIR) throw driveProblem(drive, ERROR_PATH_NOT_FOUND);
    if (type != DRIVE_REMOVABLE || (!drive.isNT() && drive.name() > "B:")) {
        throw Problem(ExitCode::refused, drive.name() + " is not a diskette drive");
    }
    DWORD sectors = 0;
    if (const DWORD error = drive.sectors(sectors)) throw driveProblem(drive, error);
    if (drive.isNT() && sectors != boot_sector::totalSectors) {
        throw Problem(ExitCode::refused, drive.name() + " does not have exactly 2,880 sectors of 512 bytes");
    }
}

class WindowsDiskette : public Diskette {
public:
    explicit WindowsDiskette(char letter) : view_(letter) {}

    DisketteView& view() override { return view_; }
    std::string root() const override { return view_.root(); }

    bool exists() const override { return true; }

    // Where Windows does not report write protection, the first change fails and nothing is lost.
    void requireWritable() override {
        std::string label;
        std::string system;
        DWORD error = view_.volume(label, system);
        if (error == NO_ERROR && !system.starts_with("FAT")) error = ERROR_UNRECOGNIZED_VOLUME;
        if (error == NO_ERROR) error = view_.writable();
        if (error != NO_ERROR) throw transferProblem(error, 0);
    }

    void prepare() override {}

    // Not every Windows version lets programs write sectors, so a file is written as a test.
    Problem diagnose() override {
        const DWORD error = errorOf([&] {
            const NoBoxes quiet;
            UTILS::DiskIO probe((root() + "PROBE.TMP").c_str(), GENERIC_WRITE, 0, CREATE_ALWAYS);
            probe.Delete();
        });
        if (error == ERROR_WRITE_PROTECT) return transferProblem(error);
        std::array<std::byte, boot_sector::size> sector{};
        for (DWORD number = 0; number < boot_sector::totalSectors; ++number) {
            if (const DWORD fault = view_.readSectors(number, sector)) return transferProblem(fault, number);
        }
        return {ExitCode::failure,
                "the diskette could not be made, although each of its sectors can be read now"};
    }

    void commit() override {
        if (const DWORD error = view_.settle()) {
            throw Problem(codeOf(error, ExitCode::failure),
                          view_.name() + " the diskette could not be finished: " + errorText(error));
        }
    }

private:
    DriveView view_;
};

class WindowsWorkplace : public Workplace {
public:
    std::unique_ptr<Diskette> insert(const MakeOptions& options) override {
        const char letter = letterOf(options.target);
        DriveView drive(letter);
        refuseOtherDrives(drive);
        std::array<unsigned char, boot_sector::size> sector{};
        if (const DWORD error = drive.bootSector(sector)) throw driveProblem(drive, error);
        return std::make_unique<WindowsDiskette>(letter);
    }
};

bool isControl(char letter) {
    return static_cast<unsigned char>(letter) < ' ';
}

// A known option that is hidden and refused.
void refuse(CLI::App& command, const std::string& name) {
    command
        .add_option_function<std::string>(
            name, [name](const std::string&) { throw CLI::ValidationError(name, layerOnly); })
        ->group("");
}

}  // namespace

// Windows' upper case, without characters that the code page of diskettes lacks: Windows would refuse the
// label only after erasing the diskette.
std::string storedLabel(const std::string& label) {
    if (label.find_first_of("\"*+,./:;<=>?[\\]|") != std::string::npos || label.front() == ' ' ||
        label.back() == ' ' || std::any_of(label.begin(), label.end(), isControl)) {
        return {};
    }
    std::string stored = label;
    CharUpperA(stored.data());
    return converted(converted(stored, CP_ACP, CP_OEMCP), CP_OEMCP, CP_ACP) == stored ? stored : "";
}

std::unique_ptr<DisketteView> openForReading(const Target& target) {
    auto drive = std::make_unique<DriveView>(letterOf(target));
    refuseOtherDrives(*drive);
    return drive;
}

std::unique_ptr<Workplace> workplaceFor(const MakeOptions&) {
    return std::make_unique<WindowsWorkplace>();
}

const HelpTexts& helpTexts() {
    static constexpr HelpTexts texts{
        "  emergency-disk make --device A: --archive mwdisk1.dat\n"
        "  emergency-disk check --device A: --archive mwdisk1.dat\n",
        "  emergency-disk make --device A: --archive mwdisk1.dat\n",
        "  emergency-disk check --device A: --archive mwdisk1.dat --json\n",
        "name the drive with --device, as in --device A:"};
    return texts;
}

void addTarget(CLI::App& command, Target& target) {
    refuse(command, "--image");
    named(command.add_option("--device", target.device, "The diskette drive, as in A:"), "DRIVE");
}

void addLayerOptions(CLI::App& command, MakeOptions&) {
    refuse(command, "--windows");
    refuse(command, "--simulate");
}

// Kept as a command that explains what to do instead.
void addFormat(Program& program, FormatOptions& options) {
    CLI::App* command = program.command(
        "format", "Not on Windows, which formats diskettes itself", "  format a:\n", [](Session&) {
            throw Problem(ExitCode::usage,
                          "blank diskette images are made where the layer plays Windows; "
                          "Windows formats a diskette in a drive itself: format a:");
        });
    command->add_option("--image", options.image)->group("");
    command->add_flag("-y,--yes", options.yes)->group("");
}

}  // namespace tools::emergency_disk
